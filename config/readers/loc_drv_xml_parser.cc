#include "qr_config/config/readers/loc_drv_xml_parser.h"

#include <utility>

#include "qr_config/config/readers/load_trace.h"

namespace {

const std::string kNetworkLayer("NetworkLayer");
const std::string kMessage("Message");
const ucs2string kName("Name");
const ucs2string kId("id");
const ucs2string kNameId("Name");
const ucs2string kCommentId("Comment");

}  // namespace

const std::vector<ElementVocabulary>& LocDrvXmlParser::Vocabulary() {
  static const std::vector<ElementVocabulary> kWords = [] {
    std::vector<ElementVocabulary> words = {
        VocabularyEntry(kNetworkLayer, {&kName}),
        VocabularyEntry(kMessage, {&kId}),
    };
    std::vector<std::string>& ids = words[1].Values[words[1].Attributes[0]];
    for (const ucs2string* id : {&kNameId, &kCommentId}) {
      ids.emplace_back();
      AppendUtf16AsUtf8(id->data(), id->size(), ids.back());
    }
    return words;
  }();
  return kWords;
}

LocDrvXmlParser::LocDrvXmlParser()
    : BasicDrvXmlParser(FileRole::LocalizedDriverFile, Vocabulary()) {}

LocDrvXmlParser::~LocDrvXmlParser() = default;

void LocDrvXmlParser::StartElementHandler(const unsigned short* name,
                                          const OrvXmlAttributeValue* attributes) {
  if (m_Trace != nullptr) ObserveStart(name, attributes);
  ReaderText::Assign(name, m_ElementName);
  if (m_ElementName == kNetworkLayer) {
    for (const OrvXmlAttributeValue* a = attributes; a->Name != nullptr; ++a) {
      if (a->Name == kName) {
        ReaderText::Assign(a->Value, m_Current.Key);
        m_Current.ExternalName.clear();
        m_Current.Comment.clear();
        if (m_Trace != nullptr) m_CurrentLine = CurrentLine();
      }
    }
  } else if (m_ElementName == kMessage) {
    m_MessageText.clear();
    m_MessageChunks = 0;
    for (const OrvXmlAttributeValue* a = attributes; a->Name != nullptr; ++a) {
      if (a->Name == kId) {
        if (a->Value == kNameId) {
          m_MessageKind = NameMessage;
        } else if (a->Value == kCommentId) {
          m_MessageKind = CommentMessage;
        } else if (m_Trace != nullptr) {
          const std::vector<std::string>& ids = Vocabulary()[1].Values.begin()->second;
          std::string id;
          ReaderText::Assign(a->Value, id);
          m_Trace->Report(DiagnosticSeverity::Warning, DiagnosticKind::UnknownValue, Here(),
                          "The message id \"" + id +
                              "\" is neither \"Name\" nor \"Comment\": the message is ignored.",
                          id, 0, &ids);
        }
      }
    }
  }
}

void LocDrvXmlParser::EndElementHandler(const unsigned short* name) {
  EndScope scope(*this);
  ReaderText::Assign(name, m_ElementName);
  if (m_ElementName == kNetworkLayer) {
    if (!m_Current.ExternalName.empty()) {
      m_Entries.push_back(std::move(m_Current));
      m_Current = LocalizedEntry();
      if (m_Trace != nullptr) m_Lines.push_back(m_CurrentLine);
    } else if (m_Trace != nullptr) {
      m_Trace->Report(DiagnosticSeverity::Warning, DiagnosticKind::IgnoredElement, ElementStart(),
                      "The texts of \"" + m_Current.Key +
                          "\" have no message with id \"Name\": the entry is dropped.",
                      m_Current.Key);
    }
  } else if (m_ElementName == kMessage) {
    if (m_Trace != nullptr && m_MessageChunks > 1 && m_MessageKind != NoMessage)
      m_Trace->Report(DiagnosticSeverity::Warning, DiagnosticKind::ValueLayout, ElementStart(),
                      "The message \"" + std::string(RawText()) +
                          "\" does not stand on one line with its tags: only its last line, \"" +
                          m_MessageText.str() + "\", is kept.");
    if (m_MessageKind == CommentMessage) {
      m_Current.Comment = m_MessageText;
    } else if (m_MessageKind == NameMessage) {
      m_Current.ExternalName = m_MessageText;
    }
    m_MessageKind = NoMessage;
  }
}

void LocDrvXmlParser::CharacterDataHandler(const unsigned short* text, int length) {
  if (m_Trace != nullptr) {
    ObserveText(text, length);
    ++m_MessageChunks;
  }
  if (m_MessageKind == NoMessage) return;
  m_MessageText.assign_utf16(text, length > 0 ? static_cast<std::size_t>(length) : 0);
}
