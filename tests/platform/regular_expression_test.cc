#include "qr_config/platform/regular_expression.h"

#include <gtest/gtest.h>

#include <string>

#include "qr_config/platform/qr_error.h"

namespace {

TEST(MatcherTest, MatchesOnlyTheWholeText) {
  std::string groups;
  for (int i = 0; i < 25; ++i) groups += "(a)";  // more capturing groups than POCO reports
  // clang-format off
  const struct {
    std::string Pattern;
    int Options;
    std::string Text;
    bool Expected;
  } cases[] = {
      {"a|ab", 0, "ab", true}, {"a|ab", 0, "abc", false}, {"b", 0, "abc", false},
      {".*", 0, "", true}, {"a+", 0, "", false}, {"a$", 0, "a\n", false},
      {"false|no?", 2, "NO", true}, {"false|no?", 0, "NO", false}, {"x\\Q)", 0, "x)", true},
      {"(a)\\1", 0, "aa", true}, {"a.c", 0, std::string("a\0c", 3), true},
      {groups, 0, std::string(25, 'a'), true}, {groups, 0, std::string(24, 'a'), false},
      // One frame per repetition, on the heap: far beyond what the C stack held.
      {"crv(_|[a-z0-9])*", 0, "crv" + std::string(100000, 'a'), true},
      {"crv(?:.)*", 0, "crv" + std::string(200000, 'a'), true}};
  // clang-format on
  for (const auto& c : cases) {
    RegularExpression::Matcher matcher(c.Pattern, c.Options);
    matcher.reset(c.Text);
    EXPECT_EQ(c.Expected, matcher.matches()) << c.Pattern << " on \"" << c.Text << '"';
  }
}

TEST(MatcherTest, InvalidPatternsThrowTheirCodeWithThePattern) {
  for (const char* pattern : {"(", "a)", "[a", "a\\", "*a", "(?x)a#comment", "(?<n"}) {
    try {
      RegularExpression::Matcher matcher(pattern, 0);
      ADD_FAILURE() << pattern;
    } catch (const QRError& error) {
      EXPECT_EQ(QRErrorCode::InvalidPattern, error.Code()) << pattern;
      EXPECT_EQ(pattern, error.Argument().str());
    }
  }
}

// A match that reaches the step or the memory limit gives up with 283 and the pattern.
TEST(MatcherTest, GivesUpAtItsLimits) {
  const std::pair<const char*, std::string> cases[] = {
      {"(x+x+)+y", std::string(5000, 'x')},   // steps
      {"(a|b)*", std::string(1000000, 'a')},  // backtracking memory
      {"crv(_|[a-z0-9])*", "crv" + std::string(1000000, 'a')},
  };
  for (const auto& [pattern, text] : cases) {
    RegularExpression::Matcher matcher(pattern, 0);
    matcher.reset(text);
    try {
      matcher.matches();
      ADD_FAILURE() << pattern;
    } catch (const QRError& error) {
      EXPECT_EQ(QRErrorCode::InvalidPattern, error.Code()) << pattern;
      EXPECT_EQ(pattern, error.Argument().str());
    }
  }
}

}  // namespace
