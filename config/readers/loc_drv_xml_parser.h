// Reader of a localised driver file.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "qr_config/config/readers/basic_drv_xml_parser.h"
#include "qr_config/platform/i18n_string.h"

// One driver's texts in one locale.
struct LocalizedEntry {
  std::string Key;              // "Name" attribute of the "NetworkLayer": the driver's name
  orv_utf8string ExternalName;  // text of the "Message" whose "id" is "Name"
  orv_utf8string Comment;       // text of the "Message" whose "id" is "Comment"
};

// Reads a localised driver file into Entries(): one entry per "NetworkLayer" that ends with a
// non-empty external name, in file order, duplicates included; an entry with only a comment
// is dropped. The root element's name is free; other elements, attributes and "id" values
// are ignored. A "Message" outside any named "NetworkLayer" fills the current empty entry,
// which the next named "NetworkLayer" replaces.
//
// The text of a message is the last chunk of character data the XML layer delivers inside
// it, converted whole (no line-break cut): with one chunk per line, a text standing on the
// line of its tags survives whole. Every "Message" start empties the message text, so a
// message without any text stores the empty text and never repeats the message before it.
//
// The reader raises nothing of its own; parse failures are 264 to 267 with the file's path
// (ReaderFrame::Parse). Writes nothing into the tree.
//
// Diagnostics (with a trace): an "id" that is neither "Name" nor "Comment", a message spread
// over several lines, a "NetworkLayer" dropped for want of a "Name" message; and the line of
// every entry (EntryLines), for the caller's own diagnostics.
class LocDrvXmlParser : public BasicDrvXmlParser {
 public:
  LocDrvXmlParser();
  ~LocDrvXmlParser() override;

  // The entries read, in file order. Complete only after Parse returned normally; valid
  // until the reader is destroyed.
  const std::vector<LocalizedEntry>& Entries() const { return m_Entries; }
  // With a trace: the line of each entry's "NetworkLayer", parallel to Entries().
  const std::vector<unsigned long>& EntryLines() const { return m_Lines; }

  // The elements and attributes this reader acts on.
  static const std::vector<ElementVocabulary>& Vocabulary();

 protected:
  void StartElementHandler(const unsigned short* name,
                           const OrvXmlAttributeValue* attributes) override;
  void EndElementHandler(const unsigned short* name) override;
  void CharacterDataHandler(const unsigned short* text, int length) override;

 private:
  enum MessageKind : std::int32_t { NoMessage = 0, NameMessage = 1, CommentMessage = 2 };

  std::vector<LocalizedEntry> m_Entries;
  LocalizedEntry m_Current;                // the entry being read
  std::int32_t m_MessageKind = NoMessage;  // the kind of the "Message" being read
  orv_utf8string m_MessageText;            // the text of the "Message" being read
  std::string m_ElementName;               // UTF-8 element name of the event, reused
  std::vector<unsigned long> m_Lines;
  unsigned long m_CurrentLine = 0;
  int m_MessageChunks = 0;
};
