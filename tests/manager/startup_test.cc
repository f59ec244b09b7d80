// Lifecycle of the manager and the start-up sequence over the main file. (Failed start-ups:
// tests/robustness/failure_atomicity_test.cc.)
#include <gtest/gtest.h>

#include "support/manager_fixture.h"

namespace {

using Field = ConfigManager::Field;

// Instance needs a manager (260); the registry's parameters become the root's fields, in
// name order; a second Initialize raises 259 and keeps the first; Destroy may be repeated;
// initialising again reads the files again.
TEST_F(ManagerTest, Lifecycle) {
  EXPECT_STREQ(CatchQRError([] { ConfigManager::Instance(); }).what(),
               "QRError 260: the configuration is not initialised");
  Registry::SetParameter("Z Param", "z");
  Registry::SetParameter("A Param", "a");
  m_Install.WriteBase("<Parameter Name=\"Marker\">1</Parameter>\n");
  ConfigManager& first = Init();
  EXPECT_EQ(Children("\\Quorin"),
            (std::vector<std::string>{"DBDrivers", "Traces", "ActiveDataSources", "Localization"}));
  std::vector<std::string> fields;
  for (const Field& f : first.GetTree().root().value()) fields.push_back(f.Name());
  EXPECT_EQ(fields, (std::vector<std::string>{"A Param", "Config Directory", "Z Param"}));
  EXPECT_EQ(CatchQRError([] { ConfigStartup::Initialize(Initialization::Library); }).Code(), 259);
  EXPECT_EQ(&ConfigManager::Instance(), &first);
  EXPECT_EQ(Value<std::int32_t>("\\Quorin\\DBDrivers", "Marker"), 1);
  ConfigStartup::Destroy();
  ConfigStartup::Destroy();
  EXPECT_EQ(CatchQRError([] { ConfigManager::Instance(); }).Code(), 260);
  m_Install.WriteBase("<Parameter Name=\"Marker\">2</Parameter>\n");
  Init();
  EXPECT_EQ(Value<std::int32_t>("\\Quorin\\DBDrivers", "Marker"), 2);
}

// An observer that asks for values gets every field with the chain of values it replaced:
// a mode section's override on top of the setting, a database parameter on top of its
// defaults, the start-up's fall-backs on top of the main file's defaults.
TEST_F(ManagerTest, ValueOrigins) {
  m_Install.WriteBase(
      "<Parameter Name=\"Timeout\">30</Parameter>\n"
      "<Library>\n<Parameter Name=\"Timeout\">60</Parameter>\n</Library>\n",
      "<NetworkLayer Name=\"D\" Implementation=\"C\"/>",
      "<DriverDefaults>\n<Parameter Name=\"Status\">7</Parameter>\n"
      "</DriverDefaults>\n");
  m_Install.WriteDriver(
      "D",
      "<Defaults>\n<Parameter Name=\"Port\">1</Parameter>\n</Defaults>\n"
      "<DataBase Name=\"db\" Active=\"Yes\">\n<Parameter Name=\"Port\">2</Parameter>\n"
      "</DataBase>\n");
  m_Install.Write("setup/D.32.setup", "");  // left out unread
  RecordingObserver observer;
  observer.Values = true;
  ConfigStartup::Initialize(Initialization::Library, observer);
  const auto has = [&](const std::string& chain) {
    for (const std::string& origin : observer.Origins)
      if (origin == chain) return true;
    return false;
  };
  EXPECT_TRUE(has("\\Quorin\\DBDrivers|Timeout <= 60@qr.cfg:19 <= 30@qr.cfg:17"))
      << ::testing::PrintToString(observer.Origins);
  EXPECT_TRUE(has("\\Quorin\\DBDrivers\\D\\db|Port <= 2@D.dsf:6 <= 1@D.dsf:3"));
  EXPECT_TRUE(has("\\Quorin\\DBDrivers\\D\\db|Status <= 0@:0 <= 7@qr.cfg:23"));
  EXPECT_TRUE(has("\\Quorin\\DBDrivers\\D\\db|Directory <= d/D@D.setup:3"));
  // Every file in the order it is read, and the setup file left out.
  EXPECT_EQ(observer.Files,
            (std::vector<std::string>{"read driver list driver.cfg", "read main file qr.cfg",
                                      "read platform character-set list platform.csl",
                                      "read setup directory setup", "skipped setup file D.32.setup",
                                      "read setup file D.setup", "read data-access file D.dsf"}));
  // An observer that does not ask for values gets none.
  struct Quiet : LoadObserver {
    int Values = 0;
    void OnValue(const LoadedValue&) override { ++Values; }
  } quiet;
  ConfigStartup::Destroy();
  ConfigStartup::Initialize(Initialization::Library, quiet);
  EXPECT_EQ(quiet.Values, 0);
}

}  // namespace
