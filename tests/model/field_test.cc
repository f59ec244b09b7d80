#include "config/model/field.h"

#include <gtest/gtest.h>

#include <string>
#include <type_traits>

#include "tests/model/model_test_support.h"

namespace {

using Field = ConfigManagerTypes::Field;

// Types that could fit the wrong kind or be narrowed do not compile.
static_assert(!std::is_constructible_v<Field, std::string, long>);
static_assert(!std::is_constructible_v<Field, std::string, double>);
static_assert(!std::is_constructible_v<Field, std::string, std::nullptr_t>);

TEST(FieldTest, OverloadsPickTheExpectedTag) {
  EXPECT_EQ(Field().ValueType(), Field::None);
  EXPECT_EQ(Field("n", "text").ValueType(), Field::String);
  EXPECT_EQ(Field("n", std::string("t")).ValueType(), Field::String);
  EXPECT_EQ(Field("n", orv_utf8string("t")).ValueType(), Field::UTF8String);
  EXPECT_EQ(Field("Status", 0).ValueType(), Field::Long);
  EXPECT_EQ(Field("n", true).ValueType(), Field::Bool);
  std::string text;
  Field updated("n", "old");
  updated.Update("new");  // a literal updates a String field
  updated.Value(text);
  EXPECT_EQ(text, "new");
}

template <typename T>
void Read(Field& field) {
  T out{};
  field.Value(out);
}

// Every reader and writer against a field of every kind: only the matching pairs succeed; a
// mismatch throws code 1 without argument and changes neither the field nor the output.
TEST(FieldTest, MismatchThrowsCode1AndChangesNothing) {
  const Field fields[] = {Field(), Field("s", "x"), Field("u", orv_utf8string("x")),
                          Field("l", std::int32_t{7}), Field("b", true)};
  const struct {
    Field::ValueTag tag;
    void (*access)(Field&);
  } accesses[] = {
      {Field::String, Read<std::string>},
      {Field::UTF8String, Read<orv_utf8string>},
      {Field::Long, Read<std::int32_t>},
      {Field::Bool, Read<bool>},
      {Field::String, [](Field& f) { f.Update(std::string("y")); }},
      {Field::String, [](Field& f) { f.Update("y"); }},
      {Field::UTF8String, [](Field& f) { f.Update(orv_utf8string("y")); }},
      {Field::Long, [](Field& f) { f.Update(std::int32_t{8}); }},
      {Field::Bool, [](Field& f) { f.Update(false); }},
  };
  for (const Field& original : fields) {
    for (const auto& a : accesses) {
      if (a.tag == original.ValueType()) continue;
      SCOPED_TRACE(original.Name() + " accessed as " + std::to_string(a.tag));
      Field f = original;
      ExpectQRError([&] { a.access(f); }, QRErrorCode::TypeMismatch);
      EXPECT_EQ(f, original);
    }
  }
  std::string out = "keep";
  ExpectQRError([&] { Field("l", std::int32_t{1}).Value(out); }, QRErrorCode::TypeMismatch);
  EXPECT_EQ(out, "keep");
}

TEST(FieldTest, Equality) {
  const struct {
    Field a, b;
    bool equal;
  } cases[] = {
      {Field(), Field(), true},
      {Field("A", "x"), Field("A", "x"), true},
      {Field("A", "x"), Field("a", "x"), false},
      {Field("A", "x"), Field("A", "y"), false},
      {Field("A", "x"), Field("A", orv_utf8string("x")), false},
      {Field("A", std::int32_t{1}), Field("A", true), false},
      {Field("A", std::int32_t{1}), Field("A", std::int32_t{1}), true},
      {Field("A", false), Field("A", true), false},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.a.Name() + "/" + c.b.Name());
    Field a = c.a;  // non-const operators
    EXPECT_EQ(c.a == c.b, c.equal);
    EXPECT_EQ(a == c.b, c.equal);
    EXPECT_EQ(c.a != c.b, !c.equal);
    EXPECT_EQ(a != c.b, !c.equal);
  }
}

TEST(FieldTest, AssignmentCopiesTagAndValueIndependently) {
  Field a("a", true);
  Field b("b", "text");
  a = b;
  EXPECT_EQ(a.ValueType(), Field::String);
  EXPECT_EQ(a, b);
  b.Update("changed");
  std::string text;
  a.Value(text);
  EXPECT_EQ(text, "text");
  a = a;
  EXPECT_EQ(static_cast<const std::string&>(a), "b");
  Field moved(std::move(a));  // moving copies
  EXPECT_EQ(moved.Name(), a.Name());
  EXPECT_EQ(moved, a);
}

}  // namespace
