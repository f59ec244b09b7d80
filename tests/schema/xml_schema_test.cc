// Each generated schema declares every element and attribute its reader acts on, with the
// words of its closed value sets, and nothing else: a reader's new word reaches its schema.
#include "xml_schema.h"

#include <gtest/gtest.h>

#include <map>
#include <ostream>
#include <regex>
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
  static const std::regex kDeclaration(
      R"re(<xs:(element|attribute) name="([^"]*)"|<xs:enumeration value="([^"]*)")re");
  Declarations declared;
  std::string element;
  std::string attribute;
  for (std::sregex_iterator it(schema.begin(), schema.end(), kDeclaration), end; it != end; ++it) {
    const std::smatch& m = *it;
    if (m[1] == "element") {
      element = m[2];
      declared[element];
    } else if (m[1] == "attribute") {
      attribute = m[2];
      declared[element][attribute];
    } else {
      declared[element][attribute].push_back(m[3]);
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
                           return std::regex_replace(info.param.Kind, std::regex("-"), "_");
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
