// Driver discovery and loading over temporary installations.
#include <gtest/gtest.h>

#include "support/manager_fixture.h"

namespace {

using Field = ConfigManager::Field;

const char* const kDrivers =
    "<NetworkLayer Name=\"Crv\" Implementation=\"C\">\n<Alias>O1</Alias>\n<Alias>Shared</Alias>\n"
    "</NetworkLayer>\n"
    "<NetworkLayer Name=\"Script\" Implementation=\"c\">\n<Alias>J</Alias>\n</NetworkLayer>\n"
    "<NetworkLayer Name=\"Plm\" Implementation=\"C\">\n<Alias>Shared</Alias>\n</NetworkLayer>\n";

using DriversTest = ManagerTest;

TEST_F(DriversTest, DriverTablesFromTheDriverList) {
  m_Install.WriteBase("", kDrivers);
  ConfigManager& manager = Init();
  EXPECT_EQ(manager.GetDriverNames(), (std::map<std::string, std::string>{{"Crv", "Crv"},
                                                                          {"O1", "Crv"},
                                                                          {"Shared", "Crv"},
                                                                          {"Script", "Script"},
                                                                          {"J", "Script"},
                                                                          {"Plm", "Plm"}}));
  EXPECT_EQ(manager.GetNativeDrivers(), (std::vector<std::string>{"Crv", "Plm"}));
  EXPECT_EQ(manager.GetOtherDrivers(), (std::vector<std::string>{"Script"}));
  EXPECT_EQ(manager.ResolveDriverName("Shared"), "Crv");
  QRError error = CatchQRError([&] { manager.ResolveDriverName("crv"); });
  EXPECT_EQ(error.Code(), 22);
  EXPECT_EQ(error.Argument().str(), "crv");
  EXPECT_EQ(CatchQRError([&] { manager.ResolveDriverName(""); }).Argument().str(), "");
}

TEST_F(DriversTest, LoadsDatabasesWithDefaultsVersionsAndAliases) {
  m_Install.WriteBase("", kDrivers,
                      "<DriverDefaults>\n<Parameter Name=\"Library Name\">main</Parameter>\n"
                      "<Parameter Name=\"Fetch\">10</Parameter>\n</DriverDefaults>\n");
  m_Install.WriteDriver(
      "Crv",
      "<Defaults>\n<Parameter Name=\"Port\">1521</Parameter>\n<Library>cl.so</Library>\n"
      "</Defaults>\n"
      "<DataBase Name=\"db1\" Active=\"Yes\">\n<Alias>D1</Alias>\n"
      "<Parameter Name=\"Port\">1522</Parameter>\n</DataBase>\n"
      "<DataBase Name=\"db2\" Active=\"Yes\"/>\n"
      "<DataBase Name=\"off\" Active=\"No\"/>\n");
  m_Install.Write("setup/crv.32.setup", TempInstallation::SetupFile("Crv", "none"));
  m_Install.Write("setup/script.setup", TempInstallation::SetupFile("Script", "Script"));
  ConfigManager& manager = Init();

  EXPECT_EQ(Children("\\Quorin\\DBDrivers"), (std::vector<std::string>{"Crv"}));
  EXPECT_EQ(Children("\\Quorin\\DBDrivers\\Crv"), (std::vector<std::string>{"db1", "db2"}));
  EXPECT_EQ(Children("\\Quorin\\Localization"), (std::vector<std::string>{"Crv"}));
  const std::string db1 = "\\Quorin\\DBDrivers\\Crv\\db1";
  EXPECT_EQ(Value<std::int32_t>(db1, "Port"), 1522);
  EXPECT_EQ(Value<std::int32_t>(db1, "Fetch"), 10);
  EXPECT_EQ(Value<std::int32_t>(db1, "Status"), 0);
  EXPECT_EQ(Value<std::string>(db1, "Library Name"), "Not Defined");
  EXPECT_EQ(Value<std::string>(db1, "Library"), "cl.so");
  EXPECT_EQ(Value<std::string>(db1, "Client"), "1.2");
  EXPECT_EQ(Value<std::string>(db1, "Directory"), "d/Crv");
  EXPECT_EQ(Value<std::string>(db1, "Configuration File"), m_Install.Path("d/Crv/Crv.dsf"));
  EXPECT_EQ(manager.ResolveDatabaseName("Crv", "D1"), "db1");
  EXPECT_EQ(CatchQRError([&] { manager.ResolveDatabaseName("Crv", "d1"); }).Code(), 13);
  EXPECT_EQ(CatchQRError([&] { manager.GetDatabaseNames("Script"); }).Code(), 22);
}

TEST_F(DriversTest, FailingDataAccessFileBySelectedPolicy) {
  m_Install.WriteBase("", kDrivers);
  m_Install.WriteDriver("Crv", "<DataBase Name=\"db1\" Active=\"Yes\"/>\n");
  m_Install.WriteDriver("Plm", "<DataBase Name=\"broken\" Active=\"Yes\">\n");
  Init(Initialization::Server);  // Server mode skips every failing driver
  EXPECT_EQ(Children("\\Quorin\\DBDrivers\\Crv"), (std::vector<std::string>{"db1"}));
  ConfigStartup::Destroy();
  EXPECT_EQ(CatchQRError([] { ConfigStartup::Initialize(Initialization::Library); }).Code(), 10);
  m_Install.Write("qr.cfg", TempInstallation::MainFile().replace(
                                TempInstallation::MainFile().find(">No<"), 4, ">Yes<"));
  EXPECT_NO_THROW(Init(Initialization::Library));
}

TEST_F(DriversTest, ActiveDataSourcesFilterDriversAndDatabases) {
  m_Install.WriteBase(
      "<ActiveDataSources>\n<NetworkLayer Name=\"Plm\">\n<DataBase Name=\"p.*\"/>\n"
      "</NetworkLayer>\n</ActiveDataSources>\n",
      kDrivers);
  m_Install.WriteDriver("Crv", "<DataBase Name=\"db1\" Active=\"Yes\"/>\n");
  m_Install.WriteDriver(
      "Plm", "<DataBase Name=\"p1\" Active=\"Yes\"/>\n<DataBase Name=\"xp1\" Active=\"Yes\"/>\n");
  Init(Initialization::Library);
  EXPECT_EQ(Children("\\Quorin\\DBDrivers"), (std::vector<std::string>{"Plm"}));
  EXPECT_EQ(Children("\\Quorin\\DBDrivers\\Plm"), (std::vector<std::string>{"p1"}));
  ConfigStartup::Destroy();

  // Server mode rebuilds the subtree from the host's registrations (none: load everything).
  Init(Initialization::Server);
  EXPECT_EQ(Children("\\Quorin\\ActiveDataSources"), std::vector<std::string>{});
  EXPECT_EQ(Children("\\Quorin\\DBDrivers\\Plm"), (std::vector<std::string>{"p1", "xp1"}));
  ConfigStartup::Destroy();

  m_Install.WriteBase(  // an invalid pattern ends the start-up
      "<ActiveDataSources>\n<NetworkLayer Name=\"Plm\">\n<DataBase Name=\"p(\"/>\n"
      "</NetworkLayer>\n</ActiveDataSources>\n",
      kDrivers);
  EXPECT_EQ(CatchQRError([] { ConfigStartup::Initialize(Initialization::Library); }).Code(), 10);
}

TEST_F(DriversTest, ExtensionMarkersAddRepositoryOnce) {
  m_Install.WriteBase("", kDrivers);
  m_Install.WriteDriver(
      "Crv",
      "<DataBase Name=\"a\" Active=\"Yes\">\n<Parameter Name=\"Extensions\">xa,yb</Parameter>\n"
      "<Parameter Name=\"Driver Capabilities\">Read</Parameter>\n</DataBase>\n"
      "<DataBase Name=\"b\" Active=\"Yes\">\n<Parameter Name=\"Extensions\">yb</Parameter>\n"
      "</DataBase>\n"
      "<DataBase Name=\"c\" Active=\"Yes\">\n<Parameter Name=\"Extensions\">zc,</Parameter>\n"
      "</DataBase>\n");
  m_Install.Write("d/Crv/extensions/p1/yb.sqx", "");
  m_Install.Write("d/Crv/extensions/p2/yb.sqx", "");
  m_Install.Write("d/Crv/extensions/p2/.sqx", "");
  Init();
  EXPECT_EQ(Value<std::string>("\\Quorin\\DBDrivers\\Crv\\a", "Driver Capabilities"),
            "Read,Repository");
  EXPECT_EQ(Value<std::string>("\\Quorin\\DBDrivers\\Crv\\b", "Driver Capabilities"), "Repository");
  EXPECT_EQ(Value<std::string>("\\Quorin\\DBDrivers\\Crv\\c", "Driver Capabilities"), "Repository");
}

}  // namespace
