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
