// The sample installation under examples/ loads in both modes on the build platform; the
// tests of qrconfig read its values in detail.
#include <gtest/gtest.h>

#include "qr_config/qr_config.h"

namespace {

class SampleInstallation : public ::testing::TestWithParam<Initialization::Mode> {
 protected:
  SampleInstallation() {
    Registry::ClearParameters();
    Registry::SetParameter("Config Directory", QR_EXAMPLES_DIR "/sample-config");
  }
  ~SampleInstallation() override {
    ConfigStartup::Destroy();
    Registry::ClearParameters();
  }
};

TEST_P(SampleInstallation, Loads) {
  ConfigSession session(GetParam());
  ConfigManager& config = ConfigManager::Instance();
  EXPECT_EQ(config.GetNativeDrivers(), (std::vector<std::string>{"Corvane", "Pelmora", "Filetta"}));
  EXPECT_EQ(config.ResolveDatabaseName("Corvane", "CRV19"), "crv19");
  EXPECT_EQ(config.GetCharSetTableEntry("Corvane", "crv19", "UTF-8"), "DB_UTF8");

  orv_utf8string name;
  config.GetLocalizedDriver("Corvane", config.GetLocale("fr", "CA"))
      .value()
      .Find("External Name")
      .Value(name);
  EXPECT_EQ(name.str(),
            "Base de donn\xC3\xA9"
            "es Corvane");
}

INSTANTIATE_TEST_SUITE_P(BothModes, SampleInstallation,
                         ::testing::Values(Initialization::Server, Initialization::Library));

}  // namespace
