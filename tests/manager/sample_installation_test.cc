// The conveniences of qr_config.h on the sample installation under examples/, in both modes.
// (The tests of qrconfig read the sample's values in detail.)
#include <gtest/gtest.h>

#include "support/manager_fixture.h"

namespace Initialization {
void PrintTo(Mode mode, std::ostream* out) {
  *out << (mode == Server ? "Server" : "Library");
}
}  // namespace Initialization

namespace {

class SampleInstallation : public ::testing::TestWithParam<Initialization::Mode> {
 protected:
  SampleInstallation() {
    Registry::ClearParameters();
    Registry::SetParameter("Config Directory", QR_EXAMPLES_DIR "/sample-config");
  }
  ~SampleInstallation() override { Registry::ClearParameters(); }
};

TEST_P(SampleInstallation, ConveniencesReadAValueInOneCall) {
  ConfigSession session(GetParam());
  ConfigManager& config = ConfigManager::Instance();
  const ConfigManager::Node& crv19 = qr_config::DatabaseNode(config, "CRV", "CRV19");
  EXPECT_EQ("crv19", crv19.Name());
  EXPECT_EQ("libcrvclient.so", qr_config::Value<std::string>(crv19, "Library"));
  EXPECT_EQ(7, qr_config::ValueOr<std::int32_t>(crv19, "No Such Field", 7));
  EXPECT_EQ(1, CatchQRError([&] { qr_config::Value<bool>(crv19, "Library"); }).Code());
  EXPECT_EQ(1, CatchQRError([&] { qr_config::ValueOr<bool>(crv19, "Library", false); }).Code());
  EXPECT_EQ(261, CatchQRError([&] { qr_config::Value<std::string>(crv19, "Nope"); }).Code());
  EXPECT_EQ(22, CatchQRError([&] { qr_config::DatabaseNode(config, "CRVX", "CRV19"); }).Code());
  EXPECT_EQ(13, CatchQRError([&] { qr_config::DatabaseNode(config, "CRV", "crv99"); }).Code());
}

INSTANTIATE_TEST_SUITE_P(BothModes, SampleInstallation,
                         ::testing::Values(Initialization::Server, Initialization::Library),
                         testing::PrintToStringParamName());

}  // namespace
