// XmlScanner: reads an XML file into an XmlDocument through the library's XML layer.
#pragma once

#include <string>
#include <vector>

#include "check/xml_document.h"
#include "qr_config/platform/xml_parser.h"

namespace qrconfig {

// Reads a file with the same XML layer as the library's readers (so the same documents are
// accepted and refused, with the layer's line and column on failure) and records every
// element, its attributes, its text and the line of its start tag.
//
// Lines are counted from the line breaks the XML layer reports (each line break of character
// data is a chunk of its own; comments, white space outside the root element and other markup
// arrive as raw text). A line break inside a tag (between attributes, or in an attribute
// value) is not reported by the layer, so an element that follows a tag spread over several
// lines is placed that many lines too early.
//
// One scanner reads one file; Scan makes its own.
class XmlScanner : public XMLParser {
 public:
  // The elements of the file at `path`. An unreadable or malformed file is no exception: the
  // document then holds the elements before the failure and Error tells what and where.
  // Only a lack of memory throws.
  static XmlDocument Scan(const std::string& path);

 protected:
  void StartElementHandler(const unsigned short* name,
                           const OrvXmlAttributeValue* attributes) override;
  void EndElementHandler(const unsigned short* name) override;
  void CharacterDataHandler(const unsigned short* text, int length) override;

 private:
  XmlScanner() = default;

  XmlDocument m_Document;
  std::vector<std::size_t> m_Open;  // indices of the open elements, innermost last
};

}  // namespace qrconfig
