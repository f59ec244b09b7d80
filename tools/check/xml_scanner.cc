#include "check/xml_scanner.h"

#include <Poco/Path.h>

#include "qr_config/config/readers/reader_frame.h"
#include "qr_config/platform/qr_error.h"

namespace qrconfig {

XmlDocument XmlScanner::Scan(const std::string& path) {
  XmlScanner scanner;
  scanner.m_Document.Path = path;
  try {
    scanner.Parse(Poco::Path(path));
  } catch (const QRError&) {
    scanner.m_Document.Error = scanner.LastError();
  }
  return std::move(scanner.m_Document);
}

void XmlScanner::StartElementHandler(const unsigned short* name,
                                     const OrvXmlAttributeValue* attributes) {
  XmlElement element;
  ReaderText::Assign(name, element.Name);
  for (; attributes->Name != nullptr; ++attributes) {
    std::string attributeName;
    std::string value;
    ReaderText::Assign(attributes->Name, attributeName);
    ReaderText::Assign(attributes->Value, value);
    element.Attributes.emplace_back(std::move(attributeName), std::move(value));
  }
  element.Line = CurrentLine();
  element.Depth = m_Open.size();
  if (!m_Open.empty()) element.Parent = m_Open.back();
  m_Open.push_back(m_Document.Elements.size());
  m_Document.Elements.push_back(std::move(element));
}

void XmlScanner::EndElementHandler(const unsigned short*) {
  if (!m_Open.empty()) m_Open.pop_back();
}

void XmlScanner::CharacterDataHandler(const unsigned short* text, int length) {
  if (m_Open.empty()) return;
  XmlElement& element = m_Document.Elements[m_Open.back()];
  ReaderText::Append(text, length, element.RawText);
  ReaderText::AppendCut(text, length, element.Text);
}

}  // namespace qrconfig
