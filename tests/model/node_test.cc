#include "qr_config/config/model/node.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "tests/model/model_test_support.h"

namespace {

using Field = ConfigManagerTypes::Field;
using Node = ConfigManagerTypes::Node;
using L = std::int32_t;

Node Make(const std::string& name, const std::vector<Field>& fields) {
  Node node(name);
  for (const Field& f : fields) node.push_back(f);
  return node;
}
std::vector<Field> Fields(const Node& node) {
  return {node.begin(), node.end()};
}

TEST(NodeTest, FindTakesTheFirstFieldOfAName) {
  Node node = Make("n", {Field("A", L{1}), Field("A", L{2})});
  EXPECT_EQ(&node.Find("A"), &node.front());
  EXPECT_EQ(&node["A"], &node.front());
  EXPECT_TRUE(node.Exists("A"));
  EXPECT_FALSE(node.Exists("a"));
  ExpectQRError([&] { node.Find("a"); }, QRErrorCode::MissingField, "a");
  const Node empty("e");
  ExpectQRError([&] { empty["X"]; }, QRErrorCode::MissingField, "X");
  EXPECT_FALSE(empty.Exists("X"));
  EXPECT_TRUE(empty.empty());  // a failed lookup creates nothing
}

TEST(NodeTest, UpdateMerges) {
  const struct {
    const char* title;
    std::vector<Field> target, other, result;
    int code;  // 0: no error
  } cases[] = {
      {"first of two equally named fields",
       {Field("A", L{1}), Field("A", L{2})},
       {Field("A", L{5})},
       {Field("A", L{5}), Field("A", L{2})},
       0},
      {"mismatch leaves the target", {Field("X", L{1})}, {Field("X", "1")}, {Field("X", L{1})}, 1},
      {"appended before the failure stays",
       {},
       {Field("N", true), Field("M", orv_utf8string("m"))},
       {Field("N", true)},
       261},
      {"None is never added", {}, {Field()}, {}, 261},
      {"empty other", {Field("A", "a")}, {}, {Field("A", "a")}, 0},
      {"second of a name updates the first",
       {},
       {Field("A", L{1}), Field("A", L{2})},
       {Field("A", L{2})},
       0},
      {"String then Long of one name",
       {},
       {Field("A", "s"), Field("A", L{1})},
       {Field("A", "s")},
       1},
      {"UTF8String and None targets are skipped",
       {Field("U", orv_utf8string("u")), Field()},
       {Field("U", L{3}), Field("", "x"), Field("S", "s"), Field("B", false)},
       {Field("U", orv_utf8string("u")), Field(), Field("S", "s"), Field("B", false)},
       0},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.title);
    Node node = Make("target", c.target);
    const Node other = Make("other", c.other);
    if (c.code == 0)
      node.Update(other);
    else
      ExpectQRError([&] { node.Update(other); }, c.code);
    EXPECT_EQ(Fields(node), c.result);
    EXPECT_EQ(node.Name(), "target");
  }
}

TEST(NodeTest, BuildsFromParameters) {
  using P = SFile::Parameter;
  const std::map<std::string, P> parameters = {
      {"k1", P("Flag", true)}, {"k2", P("Flag", true)}, {"k3", P("Flag", false)},
      {"k4", P("Num", -3)},    {"k5", P("Text", "12")},
  };
  const Node node("n", parameters);
  EXPECT_EQ(Fields(node), (std::vector<Field>{Field("Flag", true), Field("Flag", false),
                                              Field("Num", L{-3}), Field("Text", "12")}));
}

TEST(NodeTest, MovingCopiesFieldsAndMovesTheName) {
  Node source = Make("src", {Field("A", "a")});
  Node moved(std::move(source));
  EXPECT_EQ(source.Name() + "|" + moved.Name(), "|src");
  EXPECT_EQ(Fields(source), Fields(moved));
  Node assigned("other");
  assigned = std::move(moved);
  assigned = assigned;
  EXPECT_EQ(assigned.Name() + "|" + moved.Name(), "src|");
  EXPECT_EQ(moved.size(), 1u);
}

}  // namespace
