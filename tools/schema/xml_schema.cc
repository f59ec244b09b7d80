#include "xml_schema.h"

namespace qr_schema {
namespace {

// The readers accept any name for the root element (one they do not know, they pass over),
// but a schema cannot declare a root of any name whose content it still checks, so each
// schema declares the name that the sample installation and docs/file-formats.md use.
//
// Only that name is valid as the root: the vocabulary's elements are declared inside the
// shared content type, not at the top level. A reader acts on a known element wherever it
// stands, the root included, so a known root is read as one more element around the whole
// file (a driver list whose root is <NetworkLayer> is a driver that the first driver inside
// it replaces); such a file is a fragment saved on its own, not a layout to offer. Keeping
// the known elements off the top level also lets an editor offer the one usual root in an
// empty file instead of every element.
const std::vector<SchemaKind> kKinds = {
    {"main", FileRole::MainFile, "Configuration"},
    {"driver-list", FileRole::DriverList, "DriverList"},
    {"setup", FileRole::SetupFile, "Setup"},
    {"data-access", FileRole::DataAccessFile, "DataAccess"},
    {"localised-driver", FileRole::LocalizedDriverFile, "DriverTexts"},
};

// `text` as the value of an XML attribute between double quotes.
std::string Quoted(const std::string& text) {
  std::string quoted = "\"";
  for (char c : text) {
    switch (c) {
      case '&':
        quoted += "&amp;";
        break;
      case '<':
        quoted += "&lt;";
        break;
      case '"':
        quoted += "&quot;";
        break;
      default:
        quoted += c;
    }
  }
  return quoted + '"';
}

// The declaration of element `name`, indented by `indent`, with the attributes of `words`
// (none when it is null): text and known elements through the shared type "content".
void DeclareElement(std::string& out, const std::string& indent, const std::string& name,
                    const ElementVocabulary* words) {
  out += indent + "<xs:element name=" + Quoted(name);
  if (words == nullptr || words->Attributes.empty()) {
    out += " type=\"content\"/>\n";
    return;
  }
  out += ">\n" + indent + "  <xs:complexType mixed=\"true\">\n" + indent +
         "    <xs:complexContent>\n" + indent + "      <xs:extension base=\"content\">\n";
  const std::string inner = indent + "        ";
  for (const std::string& attribute : words->Attributes) {
    out += inner + "<xs:attribute name=" + Quoted(attribute);
    const auto values = words->Values.find(attribute);
    if (values == words->Values.end()) {
      out += " type=\"xs:string\"/>\n";
      continue;
    }
    out +=
        ">\n" + inner + "  <xs:simpleType>\n" + inner + "    <xs:restriction base=\"xs:string\">\n";
    for (const std::string& value : values->second)
      out += inner + "      <xs:enumeration value=" + Quoted(value) + "/>\n";
    out += inner + "    </xs:restriction>\n" + inner + "  </xs:simpleType>\n" + inner +
           "</xs:attribute>\n";
  }
  out += indent + "      </xs:extension>\n" + indent + "    </xs:complexContent>\n" + indent +
         "  </xs:complexType>\n" + indent + "</xs:element>\n";
}

}  // namespace

const std::vector<SchemaKind>& SchemaKinds() {
  return kKinds;
}

const SchemaKind* FindSchemaKind(const std::string& kind) {
  for (const SchemaKind& known : kKinds) {
    if (kind == known.Kind) return &known;
  }
  return nullptr;
}

std::string XmlSchemaOf(const SchemaKind& kind) {
  const std::vector<ElementVocabulary>& vocabulary = VocabularyOf(kind.Role);
  const std::string role = FileRoleName(kind.Role);
  std::string out =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      "<!-- XML Schema of a qr_config " +
      role + " (qr_config " + qr_config::Version() +
      ").\n"
      "     Generated from the elements and attributes its reader acts on: do not edit.\n"
      "     The reader acts on an element wherever it stands, so every element may hold text\n"
      "     and the known elements in any order; each declares the attributes the reader\n"
      "     reads, all optional. Unknown elements and attributes are invalid. The reader\n"
      "     accepts any name for the root element; this schema declares the usual one. -->\n"
      "<xs:schema xmlns:xs=\"http://www.w3.org/2001/XMLSchema\">\n"
      "  <xs:complexType name=\"content\" mixed=\"true\">\n"
      "    <xs:choice minOccurs=\"0\" maxOccurs=\"unbounded\">\n";
  const ElementVocabulary* root = nullptr;
  for (const ElementVocabulary& words : vocabulary) {
    DeclareElement(out, "      ", words.Element, &words);
    if (words.Element == kind.Root) root = &words;
  }
  out +=
      "    </xs:choice>\n"
      "  </xs:complexType>\n";
  // Should a reader come to act on the usual root's name, the root reads its attributes.
  DeclareElement(out, "  ", kind.Root, root);
  out += "</xs:schema>\n";
  return out;
}

}  // namespace qr_schema
