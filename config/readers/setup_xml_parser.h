// Reader of a driver's setup file.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "qr_config/config/readers/reader_frame.h"

// Reads one setup file at a time into four results: the driver's name ("Name" attribute of
// "NetworkLayer"), the directory and the file name of its data-access file (texts of
// "Directory" and "DataFileName") and its versions (type and text of each "Version"). The
// elements are recognised wherever they stand; the root element, the nesting and the order
// are not checked. Names are compared exactly.
//
// The text of an element is the character data since the most recent start tag of any
// element, after the line-break cut of ReaderText::AppendCut (a value written on the lines
// between its tags keeps its indentation), so an element with a child yields only the text
// after that child's start tag. For repeated elements the last "NetworkLayer" name and the last
// "Directory" and "DataFileName" texts win, while the first "Version" of a type stays.
//
// Diagnostics (with a trace): values not on the line of their tags, a "Directory",
// "DataFileName" or "NetworkLayer" given twice (the last counts), a "Version" type given twice
// (the first counts) or a "Version" without "Type"; and the place of each result, for the
// loader's own diagnostics.
//
// One reader serves every setup file in turn. Parse empties the four results but keeps the
// last "Type" seen: a "Version" without "Type" is filed under the type of the last "Version"
// that had one, read with this reader in this file or an earlier one (the empty type when
// there was none). The data-access reader relies on this object's Directory() and Versions()
// while it reads the file found here.
class SetupXmlParser : public ReaderFrame {
 public:
  SetupXmlParser();
  ~SetupXmlParser() override;

  // The results of the last Parse; valid until the next Parse or the reader's destruction.
  // After a failed Parse they are partly filled and must not be used. Missing elements or
  // attributes leave a result empty.
  const std::string& NetworkLayerName() const { return m_NetworkLayerName; }
  const std::string& Directory() const { return m_Directory; }
  const std::string& DataFileName() const { return m_DataFileName; }
  // Version type to version text, ordered by type, byte-wise.
  const std::map<std::string, std::string>& Versions() const { return m_Versions; }

  // With a trace: the start tags that gave each result (line 0 when none did); the version
  // lines are keyed like Versions().
  struct Places {
    unsigned long NetworkLayer = 0;
    unsigned long Directory = 0;
    unsigned long DataFileName = 0;
    std::map<std::string, unsigned long> Versions;
  };
  const Places& ResultPlaces() const { return m_Places; }
  // The file of the last Parse, as the trace keeps it (empty without a trace).
  std::string_view File() const { return TracedPath(); }

  // The elements and attributes this reader acts on.
  static const std::vector<ElementVocabulary>& Vocabulary();

 protected:
  // Empties the four results; the last "Type" survives on purpose (see above).
  void BeginParse(const Poco::Path& file) override;

  void StartElementHandler(const unsigned short* name,
                           const OrvXmlAttributeValue* attributes) override;
  void EndElementHandler(const unsigned short* name) override;
  void CharacterDataHandler(const unsigned short* text, int length) override;

 private:
  std::string m_VersionType;  // "Type" of the most recent "Version" that had one
  std::string m_Text;         // character data since the last start tag
  std::string m_NetworkLayerName;
  std::string m_Directory;
  std::string m_DataFileName;
  std::map<std::string, std::string> m_Versions;
  Places m_Places;
  bool m_VersionTyped = false;  // the "Version" being read has its own "Type"
};
