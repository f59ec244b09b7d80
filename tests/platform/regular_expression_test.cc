#include "qr_config/platform/regular_expression.h"

#include <gtest/gtest.h>

#include <string>

#include "qr_config/platform/qr_error.h"

namespace {

// A pattern matches only the whole text; an invalid pattern, and a match that reaches the step
// or the memory limit, throw 283 with the pattern.
TEST(MatcherTest, MatchesOnlyTheWholeTextOrGivesUpWithThePattern) {
  std::string groups;
  for (int i = 0; i < 25; ++i) groups += "(a)";  // more capturing groups than POCO reports
  // clang-format off
  const struct {
    std::string Pattern;
    int Options;
    std::string Text;
    const char* Expected;  // "match", "no match" or "283"
  } cases[] = {
      {"a|ab", 0, "ab", "match"}, {"a|ab", 0, "abc", "no match"}, {"b", 0, "abc", "no match"},
      {".*", 0, "", "match"}, {"a+", 0, "", "no match"}, {"a$", 0, "a\n", "no match"},
      {"false|no?", 2, "NO", "match"}, {"false|no?", 0, "NO", "no match"},
      {"x\\Q)", 0, "x)", "match"}, {"(a)\\1", 0, "aa", "match"},
      {"a.c", 0, std::string("a\0c", 3), "match"},
      {groups, 0, std::string(25, 'a'), "match"}, {groups, 0, std::string(24, 'a'), "no match"},
      // One frame per repetition, on the heap: far beyond what the C stack held.
      {"crv(_|[a-z0-9])*", 0, "crv" + std::string(100000, 'a'), "match"},
      {"crv(?:.)*", 0, "crv" + std::string(200000, 'a'), "match"},
      // The limits: steps, backtracking memory, and frames.
      {"(x+x+)+y", 0, std::string(5000, 'x'), "283"},
      {"(a|b)*", 0, std::string(1000000, 'a'), "283"},
      {"crv(_|[a-z0-9])*", 0, "crv" + std::string(1000000, 'a'), "283"},
      // Invalid patterns.
      {"(", 0, "", "283"}, {"a)", 0, "", "283"}, {"[a", 0, "", "283"}, {"a\\", 0, "", "283"},
      {"*a", 0, "", "283"}, {"(?x)a#comment", 0, "", "283"}, {"(?<n", 0, "", "283"}};
  // clang-format on
  for (const auto& c : cases) {
    SCOPED_TRACE(c.Pattern.substr(0, 40) + " on " + std::to_string(c.Text.size()) + " bytes");
    std::string outcome;
    try {
      RegularExpression::Matcher matcher(c.Pattern, c.Options);
      matcher.reset(c.Text);
      outcome = matcher.matches() ? "match" : "no match";
    } catch (const QRError& error) {
      EXPECT_EQ(c.Pattern, error.Argument().str());
      outcome = std::to_string(error.Code());
    }
    EXPECT_EQ(c.Expected, outcome);
  }
}

}  // namespace
