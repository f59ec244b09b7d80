#include "qr_config/config/readers/drv_xml_parser.h"

#include <utility>

#include "qr_config/platform/i18n_string.h"

namespace {

const std::string kNetworkLayer("NetworkLayer");
const std::string kAlias("Alias");
const std::string kNative("C");
const ucs2string kName("Name");
const ucs2string kImplementation("Implementation");

}  // namespace

DrvXmlParser::DrvXmlParser() = default;

DrvXmlParser::~DrvXmlParser() = default;

const std::string& DrvXmlParser::NativeImplementation() {
  return kNative;
}

void DrvXmlParser::StartElementHandler(const unsigned short* name,
                                       const OrvXmlAttributeValue* attributes) {
  ReaderText::Assign(name, m_ElementName);
  if (m_ElementName == kNetworkLayer) {
    // The previous entry, if one is still open, is dropped.
    m_Current.Name.clear();
    m_Current.Aliases.clear();
    m_Current.Implementation.clear();
    for (const OrvXmlAttributeValue* a = attributes; a->Name != nullptr; ++a) {
      if (a->Name == kName) {
        ReaderText::Assign(a->Value, m_Current.Name);
      } else if (a->Name == kImplementation) {
        ReaderText::Assign(a->Value, m_Current.Implementation);
      }
    }
  } else if (m_ElementName == kAlias) {
    m_InAlias = true;
  }
}

void DrvXmlParser::EndElementHandler(const unsigned short* name) {
  ReaderText::Assign(name, m_ElementName);
  if (m_ElementName == kNetworkLayer) {
    if (!m_Current.Name.empty()) {
      m_Entries.push_back(std::move(m_Current));
      m_Current = DriverEntry();
    }
  } else if (m_ElementName == kAlias) {
    m_InAlias = false;
  }
}

void DrvXmlParser::CharacterDataHandler(const unsigned short* text, int length) {
  if (!m_InAlias || m_Current.Name.empty()) return;
  m_Current.Aliases.emplace_back();
  ReaderText::Append(text, length, m_Current.Aliases.back());
}
