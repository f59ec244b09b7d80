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

// A path splits its text into levels and never rewrites it; a name appended (by += or by the
// two-part constructor) adds its levels, and the text made keeps splitting the same way.
TEST(StdxPathTest, SplitsTextIntoLevelsAndAppendsNames) {
  const struct {
    const char* parent;
    const char* name;  // nullptr: the parent alone
    const char* text;
    std::vector<std::string> levels;
  } cases[] = {
      {"", nullptr, "", {}},
      {"\\Quorin\\DBDrivers", nullptr, "\\Quorin\\DBDrivers", {"Quorin", "DBDrivers"}},
      {"\\", nullptr, "\\", {""}},
      {"\\A\\\\B\\", nullptr, "\\A\\\\B\\", {"A", "", "B", ""}},  // empty levels are kept
      {"\\ Quo rin \\db", nullptr, "\\ Quo rin \\db", {" Quo rin ", "db"}},  // no trimming
      {"A/B", nullptr, "A/B", {"A/B"}},
      {"\\Quorin", "DBDrivers", "\\Quorin\\DBDrivers", {"Quorin", "DBDrivers"}},
      {"", "Quorin", "\\Quorin", {"Quorin"}},
      {"\\Quorin", "", "\\Quorin\\", {"Quorin", ""}},
      {"\\Quorin", "A\\B", "\\Quorin\\A\\B", {"Quorin", "A", "B"}},  // separator in the name
      {"Q", "\\A", "Q\\\\A", {"Q", "", "A"}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.parent) + " += " + (c.name != nullptr ? c.name : "(none)"));
    stdx::path extended = Make(c.parent);
    if (c.name != nullptr) extended += c.name;
    const stdx::path made = c.name != nullptr
                                ? stdx::path(c.parent, c.name, stdx::path::generic, '\\')
                                : Make(c.parent);
    for (const stdx::path* p : std::vector<const stdx::path*>{&extended, &made}) {
      EXPECT_STREQ(static_cast<const char*>(*p), c.text);
      EXPECT_EQ(Levels(*p), c.levels);
      EXPECT_EQ(Levels(Make(c.text)), c.levels);
      EXPECT_THROW((*p)[p->levels()], std::out_of_range);
      EXPECT_THROW((*p)[-1], std::out_of_range);
    }
  }
}

}  // namespace
