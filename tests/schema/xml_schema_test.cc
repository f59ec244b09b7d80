// Each generated schema declares every element and attribute its reader acts on, with the
// words of its closed value sets, and nothing else: a reader's new word reaches its schema.
#include "xml_schema.h"

#include <gtest/gtest.h>

#include <map>
#include <ostream>
#include <string>
#include <vector>

namespace qr_schema {

void PrintTo(const SchemaKind& kind, std::ostream* os) {
  *os << kind.Kind;
}

namespace {

// Element name -> attribute name -> enumerated words (empty for any text).
using Declarations = std::map<std::string, std::map<std::string, std::vector<std::string>>>;

// The declarations of a schema in the order the generator writes them: an attribute belongs
// to the element declared last, an enumerated word to the attribute declared last.
Declarations Declared(const std::string& schema) {
  static const std::string kElement = "<xs:element name=\"";
  static const std::string kAttribute = "<xs:attribute name=\"";
  static const std::string kWord = "<xs:enumeration value=\"";
  Declarations declared;
  std::string element;
  std::string attribute;
  for (std::size_t at = schema.find("<xs:"); at != std::string::npos;
       at = schema.find("<xs:", at + 1)) {
    const auto quoted = [&](const std::string& prefix) {
      const std::size_t begin = at + prefix.size();
      return schema.substr(begin, schema.find('"', begin) - begin);
    };
    if (schema.compare(at, kElement.size(), kElement) == 0) {
      element = quoted(kElement);
      declared[element];
    } else if (schema.compare(at, kAttribute.size(), kAttribute) == 0) {
      attribute = quoted(kAttribute);
      declared[element][attribute];
    } else if (schema.compare(at, kWord.size(), kWord) == 0) {
      declared[element][attribute].push_back(quoted(kWord));
    }
  }
  return declared;
}

class XmlSchemaTest : public testing::TestWithParam<SchemaKind> {};

TEST_P(XmlSchemaTest, DeclaresExactlyTheVocabularyAndTheRoot) {
  const SchemaKind& kind = GetParam();
  Declarations expected;
  expected[kind.Root];
  for (const ElementVocabulary& words : VocabularyOf(kind.Role)) {
    for (const std::string& attribute : words.Attributes) {
      const auto values = words.Values.find(attribute);
      expected[words.Element][attribute] =
          values == words.Values.end() ? std::vector<std::string>() : values->second;
    }
    expected[words.Element];
  }
  EXPECT_EQ(Declared(XmlSchemaOf(kind)), expected);
}

INSTANTIATE_TEST_SUITE_P(Kinds, XmlSchemaTest, testing::ValuesIn(SchemaKinds()),
                         [](const testing::TestParamInfo<SchemaKind>& info) {
                           std::string name = info.param.Kind;
                           for (char& c : name) c = c == '-' ? '_' : c;
                           return name;
                         });

// Every file role that has a vocabulary, that is every XML file kind, has a schema.
TEST(XmlSchemaKindsTest, CoverEveryXmlFileRole) {
  for (int r = 0; r <= static_cast<int>(FileRole::LocalizedDriverFile); ++r) {
    const FileRole role = static_cast<FileRole>(r);
    bool covered = false;
    for (const SchemaKind& kind : SchemaKinds()) covered = covered || kind.Role == role;
    EXPECT_EQ(covered, !VocabularyOf(role).empty()) << FileRoleName(role);
  }
}

}  // namespace
}  // namespace qr_schema
