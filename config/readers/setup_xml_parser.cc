#include "qr_config/config/readers/setup_xml_parser.h"
#include "qr_config/config/readers/diagnostic_text.h"

#include "qr_config/config/readers/load_trace.h"
#include "qr_config/platform/i18n_string.h"

namespace {

using DiagnosticText::Quoted;

const ucs2string kVersion("Version");
const ucs2string kType("Type");
const ucs2string kNetworkLayer("NetworkLayer");
const ucs2string kDirectory("Directory");
const ucs2string kDataFileName("DataFileName");
const ucs2string kName("Name");

}  // namespace

const std::vector<ElementVocabulary>& SetupXmlParser::Vocabulary() {
  static const std::vector<ElementVocabulary> kWords = {
      VocabularyEntry(kNetworkLayer, {&kName}),
      VocabularyEntry(kDirectory),
      VocabularyEntry(kDataFileName),
      VocabularyEntry(kVersion, {&kType}),
  };
  return kWords;
}

SetupXmlParser::SetupXmlParser()
    : ReaderFrame(kConfigFileCodes, FileRole::SetupFile, Vocabulary()) {}

SetupXmlParser::~SetupXmlParser() = default;

void SetupXmlParser::BeginParse(const Poco::Path&) {
  m_NetworkLayerName.clear();
  m_Directory.clear();
  m_DataFileName.clear();
  m_Versions.clear();
  m_Places = Places();
}

void SetupXmlParser::StartElementHandler(const unsigned short* name,
                                         const OrvXmlAttributeValue* attributes) {
  if (m_Trace != nullptr) ObserveStart(name, attributes);
  if (name == kVersion) {
    m_VersionTyped = false;
    for (const OrvXmlAttributeValue* a = attributes; a->Name != nullptr; ++a) {
      if (a->Name == kType) {
        ReaderText::Assign(a->Value, m_VersionType);
        m_VersionTyped = true;
      }
    }
  } else if (name == kNetworkLayer) {
    for (const OrvXmlAttributeValue* a = attributes; a->Name != nullptr; ++a) {
      if (a->Name == kName) {
        if (m_Trace != nullptr) {
          if (m_Places.NetworkLayer != 0)
            m_Trace->Report(DiagnosticSeverity::Warning, DiagnosticKind::DuplicateSetting, Here(),
                            "The setup file names its driver a second time (first on line " +
                                std::to_string(m_Places.NetworkLayer) + "): the last name counts.");
          m_Places.NetworkLayer = CurrentLine();
        }
        ReaderText::Assign(a->Value, m_NetworkLayerName);
      }
    }
  }
  m_Text.clear();
}

void SetupXmlParser::EndElementHandler(const unsigned short* name) {
  EndScope scope(*this);
  if (name == kVersion) {
    const bool filed = m_Versions.try_emplace(m_VersionType, m_Text).second;
    if (m_Trace == nullptr) return;
    TraceLayout(m_Text, "<Version>");
    const unsigned long line = ElementStart().Line;
    if (!m_VersionTyped)
      m_Trace->Report(DiagnosticSeverity::Warning, DiagnosticKind::IgnoredElement, ElementStart(),
                      "<Version> has no \"Type\": it is filed under " + Quoted(m_VersionType) +
                          ", the type of the last <Version> that had one.");
    if (filed) {
      m_Places.Versions[m_VersionType] = line;
    } else {
      m_Trace->Report(DiagnosticSeverity::Warning, DiagnosticKind::DuplicateSetting, ElementStart(),
                      "The version type " + Quoted(m_VersionType) +
                          " is given a second time: the first one (line " +
                          std::to_string(m_Places.Versions[m_VersionType]) + ") counts.",
                      m_VersionType);
    }
  } else if (name == kDirectory || name == kDataFileName) {
    const bool directory = name == kDirectory;
    (directory ? m_Directory : m_DataFileName) = m_Text;
    if (m_Trace == nullptr) return;
    const char* element = directory ? "Directory" : "DataFileName";
    TraceLayout(m_Text, std::string("<") + element + ">");
    unsigned long& place = directory ? m_Places.Directory : m_Places.DataFileName;
    if (place != 0)
      m_Trace->Report(DiagnosticSeverity::Warning, DiagnosticKind::DuplicateSetting, ElementStart(),
                      std::string("<") + element + "> is given a second time (first on line " +
                          std::to_string(place) + "): the last one counts.");
    place = ElementStart().Line;
  }
}

void SetupXmlParser::CharacterDataHandler(const unsigned short* text, int length) {
  if (m_Trace != nullptr) ObserveText(text, length);
  ReaderText::AppendCut(text, length, m_Text);
}
