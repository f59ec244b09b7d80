// The XML Schema of each XML file kind, written from the words its reader acts on.
#pragma once

#include <string>
#include <vector>

#include "qr_config/qr_config.h"

namespace qr_schema {

// One XML file kind: its short name (its schema is installed as qr-<Kind>.xsd), the file
// role whose reader reads it, and the root element name its schema declares.
struct SchemaKind {
  const char* Kind;
  FileRole Role;
  const char* Root;
};

// The XML file kinds, one per reader: "main", "driver-list", "setup", "data-access" and
// "localised-driver".
const std::vector<SchemaKind>& SchemaKinds();

// The kind whose short name is `kind`, or nullptr.
const SchemaKind* FindSchemaKind(const std::string& kind);

// The XML Schema (XSD 1.0, no target namespace) of `kind`, made from VocabularyOf(kind.Role)
// alone: the root element kind.Root and every element of the vocabulary may hold text and
// the vocabulary's elements in any order and number; each of these declares exactly the
// attributes its reader reads, all optional, each a closed enumeration where the vocabulary
// gives its words. Unknown elements and attributes are invalid.
std::string XmlSchemaOf(const SchemaKind& kind);

}  // namespace qr_schema
