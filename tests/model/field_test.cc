#include "qr_config/config/model/field.h"

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

// Texts short enough to live inside the field and long enough to need a block of their own,
// with NUL bytes inside: every way of making, copying, replacing, assigning (also to itself),
// moving (which copies) and comparing keeps the bytes.
TEST(FieldTest, TextsOfEveryLengthSurviveCopyUpdateAndAssignment) {
  const std::string texts[] = {"",
                               "a",
                               std::string("ab\0cd", 5),
                               "eleven-byte",
                               "twelve-bytes",
                               std::string(100, 'x') + std::string(1, '\0') + "tail"};
  for (const std::string& first : texts) {
    for (const std::string& second : texts) {
      SCOPED_TRACE(std::to_string(first.size()) + " then " + std::to_string(second.size()));
      Field s("s", first);
      Field u("u", orv_utf8string(first));
      const Field copy = s;
      Field target("t", std::int32_t{5});
      target = s;  // text over an integer
      target = target;
      s.Update(second);
      u.Update(orv_utf8string(second));
      std::string out;
      orv_utf8string utf8;
      s.Value(out);
      u.Value(utf8);
      EXPECT_EQ(out, second);
      EXPECT_EQ(utf8.str(), second);
      copy.Value(out);
      EXPECT_EQ(out, first);
      EXPECT_EQ(copy == s, first == second);
      EXPECT_EQ(s != copy, first != second);  // the non-const operators
      EXPECT_EQ(target, copy);  // neither the copy nor the assigned field saw the update
      EXPECT_EQ(static_cast<const std::string&>(target), "s");  // the name
      const Field moved(std::move(target));
      EXPECT_EQ(moved, copy);
      EXPECT_EQ(target, copy);  // moving copies
      target = s;               // text over text, then an integer over the text
      EXPECT_EQ(target, s);
      target = Field("t", std::int32_t{6});
      EXPECT_EQ(target.ValueType(), Field::Long);
      EXPECT_NE(target, Field("t", true));
      EXPECT_NE(Field("t", orv_utf8string(first)), Field("t", first));
    }
  }
}

}  // namespace
