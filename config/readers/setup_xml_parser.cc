#include "qr_config/config/readers/setup_xml_parser.h"

#include "qr_config/platform/i18n_string.h"

namespace {

const ucs2string kVersion("Version");
const ucs2string kType("Type");
const ucs2string kNetworkLayer("NetworkLayer");
const ucs2string kDirectory("Directory");
const ucs2string kDataFileName("DataFileName");
const ucs2string kName("Name");

}  // namespace

SetupXmlParser::SetupXmlParser() : ReaderFrame(kConfigFileCodes) {}

SetupXmlParser::~SetupXmlParser() = default;

void SetupXmlParser::BeginParse(const Poco::Path&) {
  m_NetworkLayerName.clear();
  m_Directory.clear();
  m_DataFileName.clear();
  m_Versions.clear();
}

void SetupXmlParser::StartElementHandler(const unsigned short* name,
                                         const OrvXmlAttributeValue* attributes) {
  if (name == kVersion) {
    for (const OrvXmlAttributeValue* a = attributes; a->Name != nullptr; ++a) {
      if (a->Name == kType) ReaderText::Assign(a->Value, m_VersionType);
    }
  } else if (name == kNetworkLayer) {
    for (const OrvXmlAttributeValue* a = attributes; a->Name != nullptr; ++a) {
      if (a->Name == kName) ReaderText::Assign(a->Value, m_NetworkLayerName);
    }
  }
  m_Text.clear();
}

void SetupXmlParser::EndElementHandler(const unsigned short* name) {
  if (name == kVersion) {
    m_Versions.try_emplace(m_VersionType, m_Text);
  } else if (name == kDirectory) {
    m_Directory = m_Text;
  } else if (name == kDataFileName) {
    m_DataFileName = m_Text;
  }
}

void SetupXmlParser::CharacterDataHandler(const unsigned short* text, int length) {
  ReaderText::AppendCut(text, length, m_Text);
}
