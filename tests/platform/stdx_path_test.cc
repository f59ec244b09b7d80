#include "qr_config/platform/stdx_path.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

namespace {

std::vector<std::string> Levels(const stdx::path& p) {
  std::vector<std::string> levels;
  for (int i = 0; i < p.levels(); ++i) levels.push_back(p[i]);
  return levels;
}

stdx::path Make(const std::string& text) {
  return stdx::path(text, stdx::path::generic, '\\');
}

TEST(StdxPathTest, SplitsTextIntoLevels) {
  const struct {
    const char* text;
    std::vector<std::string> levels;
  } cases[] = {
      {"", {}},
      {"\\Quorin", {"Quorin"}},
      {"\\Quorin\\DBDrivers", {"Quorin", "DBDrivers"}},
      {"Quorin\\DBDrivers", {"Quorin", "DBDrivers"}},  // leading separator is optional
      {"\\", {""}},
      {"\\A\\\\B\\", {"A", "", "B", ""}},  // doubled and trailing separators keep empty levels
      {"\\\\A", {"", "A"}},
      {"\\ Quo rin \\db", {" Quo rin ", "db"}},  // no trimming, case kept
      {"A/B", {"A/B"}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text);
    const stdx::path p = Make(c.text);
    EXPECT_EQ(Levels(p), c.levels);
    EXPECT_STREQ(static_cast<const char*>(p), c.text);  // the text is never rewritten
    EXPECT_THROW(p[p.levels()], std::out_of_range);
    EXPECT_THROW(p[-1], std::out_of_range);
  }
}

TEST(StdxPathTest, AppendingAddsTheNameAsLevelsAndKeepsTheTextSplittable) {
  const struct {
    const char* parent;
    const char* name;
    const char* text;
    std::vector<std::string> levels;
  } cases[] = {
      {"\\Quorin", "DBDrivers", "\\Quorin\\DBDrivers", {"Quorin", "DBDrivers"}},
      {"", "Quorin", "\\Quorin", {"Quorin"}},
      {"\\", "A", "\\\\A", {"", "A"}},
      {"\\Quorin", "", "\\Quorin\\", {"Quorin", ""}},
      {"\\Quorin", "A\\B", "\\Quorin\\A\\B", {"Quorin", "A", "B"}},  // separator in the name
      {"Q", "\\A", "Q\\\\A", {"Q", "", "A"}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.parent) + " += " + c.name);
    stdx::path extended = Make(c.parent);
    extended += c.name;
    const stdx::path made(c.parent, c.name, stdx::path::generic, '\\');
    for (const stdx::path* p : std::vector<const stdx::path*>{&extended, &made}) {
      EXPECT_STREQ(static_cast<const char*>(*p), c.text);
      EXPECT_EQ(Levels(*p), c.levels);
      EXPECT_EQ(Levels(Make(c.text)), c.levels);  // re-made from its text: the same levels
    }
  }
}

}  // namespace
