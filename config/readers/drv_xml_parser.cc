#include "qr_config/config/readers/drv_xml_parser.h"

#include <utility>

#include "qr_config/config/readers/load_trace.h"
#include "qr_config/platform/i18n_string.h"

namespace {

const std::string kNetworkLayer("NetworkLayer");
const std::string kAlias("Alias");
const std::string kNative("C");
const ucs2string kName("Name");
const ucs2string kImplementation("Implementation");

}  // namespace

const std::vector<ElementVocabulary>& DrvXmlParser::Vocabulary() {
  static const std::vector<ElementVocabulary> kWords = {
      VocabularyEntry(kNetworkLayer, {&kName, &kImplementation}),
      VocabularyEntry(kAlias),
  };
  return kWords;
}

DrvXmlParser::DrvXmlParser() : BasicDrvXmlParser(FileRole::DriverList, Vocabulary()) {}

DrvXmlParser::~DrvXmlParser() = default;

const std::string& DrvXmlParser::NativeImplementation() {
  return kNative;
}

void DrvXmlParser::StartElementHandler(const unsigned short* name,
                                       const OrvXmlAttributeValue* attributes) {
  if (m_Trace != nullptr) ObserveStart(name, attributes);
  ReaderText::Assign(name, m_ElementName);
  if (m_ElementName == kNetworkLayer) {
    if (m_Trace != nullptr) {
      if (!m_Current.Name.empty())
        m_Trace->Report(DiagnosticSeverity::Warning, DiagnosticKind::IgnoredElement, Here(),
                        "<NetworkLayer> stands inside the <NetworkLayer> of \"" + m_Current.Name +
                            "\": it replaces that driver, which is lost.");
      m_CurrentPlace = EntryPlace{CurrentLine(), {}};
    }
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
    if (m_Trace == nullptr) return;
    if (m_Current.Name.empty())
      m_Trace->Report(DiagnosticSeverity::Warning, DiagnosticKind::IgnoredElement, Here(),
                      "<NetworkLayer> has no \"Name\": the driver list ignores it.");
    else if (m_Current.Implementation != kNative && m_Current.Implementation.size() == 1 &&
             m_Current.Implementation[0] == 'c')
      m_Trace->Report(DiagnosticSeverity::Warning, DiagnosticKind::CaseVariant, Here(),
                      "Implementation=\"c\" of \"" + m_Current.Name +
                          "\" is not \"C\": values are compared exactly, so the driver is not "
                          "native and the library does not load it.",
                      m_Current.Implementation);
  } else if (m_ElementName == kAlias) {
    m_InAlias = true;
    m_AliasChunks = 0;
    if (m_Trace != nullptr && m_Current.Name.empty())
      m_Trace->Report(DiagnosticSeverity::Warning, DiagnosticKind::IgnoredElement, Here(),
                      "<Alias> stands outside a named <NetworkLayer>: the driver list ignores "
                      "it.");
  }
}

void DrvXmlParser::EndElementHandler(const unsigned short* name) {
  EndScope scope(*this);
  ReaderText::Assign(name, m_ElementName);
  if (m_ElementName == kNetworkLayer) {
    if (!m_Current.Name.empty()) {
      m_Entries.push_back(std::move(m_Current));
      m_Current = DriverEntry();
      if (m_Trace != nullptr) m_Places.push_back(std::move(m_CurrentPlace));
    }
  } else if (m_ElementName == kAlias) {
    m_InAlias = false;
    if (m_Trace != nullptr && m_AliasChunks > 1 && !m_Current.Name.empty())
      m_Trace->Report(DiagnosticSeverity::Warning, DiagnosticKind::ValueLayout, ElementStart(),
                      "An alias of \"" + m_Current.Name +
                          "\" does not stand on one line with its tags: every line of it, line "
                          "breaks and indentation included, becomes an alias of its own.");
  }
}

void DrvXmlParser::CharacterDataHandler(const unsigned short* text, int length) {
  if (!m_InAlias || m_Current.Name.empty()) return;
  m_Current.Aliases.emplace_back();
  ReaderText::Append(text, length, m_Current.Aliases.back());
  if (m_Trace != nullptr) {
    ++m_AliasChunks;
    m_CurrentPlace.AliasLines.push_back(ElementStart().Line);
  }
}
