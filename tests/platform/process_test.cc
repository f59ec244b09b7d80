#include "qr_config/platform/process.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using ::testing::ElementsAre;

TEST(ProcessTest, DefaultsDescribeTheBuildTarget) {
  const Process& process = Process::Instance();
#if defined(__linux__) && defined(__x86_64__)
  EXPECT_THAT(process.PlatformNames(), ElementsAre("Linux-x86_64", "Linux", "Unix"));
#endif
  EXPECT_EQ("UTF-8", process.CharSetName());
  EXPECT_EQ(process.Name(), process.PlatformNames().at(0));
  for (const auto& name : process.PlatformNames()) EXPECT_TRUE(process.PlatformSupported(name));
  for (const char* name : {"", "linux", "Windows", "Unix "}) {
    EXPECT_FALSE(process.PlatformSupported(name)) << name;
  }
  EXPECT_THAT(process.OSList(""), ElementsAre(process.Name()));
  EXPECT_THAT(process.OSList("Unix"), ::testing::Contains(process.Name()));
  EXPECT_THAT(process.OSList("Linux-aarch64"), ElementsAre("Linux-aarch64"));
}

TEST(ProcessTest, ConfigureReplacesAndResetRestores) {
  const std::string defaultName = Process::Instance().Name();
  Process::Configure({"Box", "ISO-8859-1", {"Box", "Family"}, {{"Family", {"Box", "Other"}}}});
  const Process& process = Process::Instance();
  EXPECT_EQ("ISO-8859-1", process.CharSetName());
  EXPECT_TRUE(process.PlatformSupported("Family"));
  EXPECT_FALSE(process.PlatformSupported("Unix"));
  EXPECT_THAT(process.OSList("Family"), ElementsAre("Box", "Other"));
  EXPECT_THAT(process.OSList(""), ElementsAre("Box"));
  Process::Reset();
  EXPECT_EQ(defaultName, process.Name());
  EXPECT_EQ("UTF-8", process.CharSetName());
}

}  // namespace
