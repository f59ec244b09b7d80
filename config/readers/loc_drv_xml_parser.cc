#include "qr_config/config/readers/loc_drv_xml_parser.h"

#include <utility>

namespace {

const std::string kNetworkLayer("NetworkLayer");
const std::string kMessage("Message");
const ucs2string kName("Name");
const ucs2string kId("id");
const ucs2string kNameId("Name");
const ucs2string kCommentId("Comment");

}  // namespace

LocDrvXmlParser::LocDrvXmlParser() = default;

LocDrvXmlParser::~LocDrvXmlParser() = default;

void LocDrvXmlParser::StartElementHandler(const unsigned short* name,
                                          const OrvXmlAttributeValue* attributes) {
  ReaderText::Assign(name, m_ElementName);
  if (m_ElementName == kNetworkLayer) {
    for (const OrvXmlAttributeValue* a = attributes; a->Name != nullptr; ++a) {
      if (a->Name == kName) {
        ReaderText::Assign(a->Value, m_Current.Key);
        m_Current.ExternalName.clear();
        m_Current.Comment.clear();
      }
    }
  } else if (m_ElementName == kMessage) {
    m_MessageText.clear();
    for (const OrvXmlAttributeValue* a = attributes; a->Name != nullptr; ++a) {
      if (a->Name == kId) {
        if (a->Value == kNameId) {
          m_MessageKind = NameMessage;
        } else if (a->Value == kCommentId) {
          m_MessageKind = CommentMessage;
        }
      }
    }
  }
}

void LocDrvXmlParser::EndElementHandler(const unsigned short* name) {
  ReaderText::Assign(name, m_ElementName);
  if (m_ElementName == kNetworkLayer) {
    if (!m_Current.ExternalName.empty()) {
      m_Entries.push_back(std::move(m_Current));
      m_Current = LocalizedEntry();
    }
  } else if (m_ElementName == kMessage) {
    if (m_MessageKind == CommentMessage) {
      m_Current.Comment = m_MessageText;
    } else if (m_MessageKind == NameMessage) {
      m_Current.ExternalName = m_MessageText;
    }
    m_MessageKind = NoMessage;
  }
}

void LocDrvXmlParser::CharacterDataHandler(const unsigned short* text, int length) {
  if (m_MessageKind == NoMessage) return;
  m_MessageText.assign_utf16(text, length > 0 ? static_cast<std::size_t>(length) : 0);
}
