// Reader of the driver list file "driver.cfg".
#pragma once

#include <string>
#include <vector>

#include "qr_config/config/readers/basic_drv_xml_parser.h"

// One driver as the driver list gives it.
struct DriverEntry {
  std::string Name;                  // "Name" attribute of the "NetworkLayer" element
  std::vector<std::string> Aliases;  // texts of its "Alias" elements, in file order
  std::string Implementation;        // "Implementation" attribute; "C" marks a native driver
};

// Reads the driver list into Entries(): one entry per "NetworkLayer" with a non-empty "Name",
// in file order, duplicates included. The root element's name is free; other elements,
// attributes and texts are ignored. Every chunk of character data that the XML layer delivers
// inside an "Alias" of a named "NetworkLayer" becomes one alias of its own, converted whole
// (no line-break cut, no trimming), so an alias must stand on the line of its tags (and an
// alias longer than the XML layer's longest chunk, 4 Mi UTF-16 units, becomes several). A
// "NetworkLayer" nested in another replaces the outer one, which is lost. A missing
// attribute gives an empty text. The reader raises nothing of its own; parse failures are
// 264 to 267 with the file's path (ReaderFrame::Parse). Writes nothing into the tree.
//
// Diagnostics (with a trace): a "NetworkLayer" without "Name", one nested in another, an
// "Alias" outside a named "NetworkLayer" or spread over several lines, an "Implementation"
// that is "C" in other letter case; and the lines of every entry and alias, for the driver
// tables' own diagnostics.
class DrvXmlParser : public BasicDrvXmlParser {
 public:
  DrvXmlParser();
  ~DrvXmlParser() override;

  // The drivers read, in file order. Complete only after Parse returned normally; valid
  // until the reader is destroyed.
  const std::vector<DriverEntry>& Entries() const { return m_Entries; }

  // The implementation text of a native driver, "C"; driver discovery loads only those.
  static const std::string& NativeImplementation();

  // With a trace: the line of each entry's "NetworkLayer" and of each of its aliases,
  // parallel to Entries() (empty without a trace).
  struct EntryPlace {
    unsigned long Line = 0;
    std::vector<unsigned long> AliasLines;
  };
  const std::vector<EntryPlace>& EntryPlaces() const { return m_Places; }

  // The elements and attributes this reader acts on.
  static const std::vector<ElementVocabulary>& Vocabulary();

 protected:
  void StartElementHandler(const unsigned short* name,
                           const OrvXmlAttributeValue* attributes) override;
  void EndElementHandler(const unsigned short* name) override;
  void CharacterDataHandler(const unsigned short* text, int length) override;

 private:
  std::vector<DriverEntry> m_Entries;
  DriverEntry m_Current;      // the entry being read
  bool m_InAlias = false;     // between the start and the end of an "Alias"
  std::string m_ElementName;  // UTF-8 element name of the event, reused
  std::vector<EntryPlace> m_Places;
  EntryPlace m_CurrentPlace;
  int m_AliasChunks = 0;  // chunks of the "Alias" being read
};
