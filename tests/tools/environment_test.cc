// The process set-up of qrconfig: the platform profiles of --platform.
#include <gtest/gtest.h>

#include <algorithm>

#include "app/platform_profile.h"

namespace qrconfig {
namespace {

using Names = std::vector<std::string>;

TEST(PlatformProfileTest, NamesTheFamiliesOfAPlatform) {
  const std::pair<std::string, Names> cases[] = {
      {"Linux-x86_64", {"Linux-x86_64", "Linux", "Unix"}},
      {"Windows-x64", {"Windows-x64", "Windows"}},
      {"AIX", {"AIX", "Unix"}},
      {"HP-UX-11", {"HP-UX-11", "HP-UX", "Unix"}},
      {"Plan9", {"Plan9"}},
      {"linux-x86_64", {"linux-x86_64"}},
  };
  for (const auto& [name, platformNames] : cases) {
    SCOPED_TRACE(name);
    const Process::Settings settings = PlatformSettings(name);
    EXPECT_EQ(name, settings.Name);
    EXPECT_EQ("UTF-8", settings.CharSetName);
    EXPECT_EQ(platformNames, settings.PlatformNames);
    for (const std::string& list : platformNames) {
      const Names& members = settings.OSLists.at(list);
      EXPECT_EQ(1, std::count(members.begin(), members.end(), name)) << list;
    }
  }
  // The build defaults' lists keep their members.
  Names unix = Process::Defaults().OSLists.at("Unix");
  unix.push_back("AIX");
  EXPECT_EQ(unix, PlatformSettings("AIX").OSLists.at("Unix"));
}

}  // namespace
}  // namespace qrconfig
