// Host registrations of active data sources. They live for the whole process, so this test
// has a binary of its own.
#include <gtest/gtest.h>

#include "support/manager_fixture.h"

namespace {

TEST_F(ManagerTest, HostRegistrationsShapeServerMode) {
  ConfigManager::AddActiveDataSource("Crv", "db[0-9]+");
  ConfigManager::AddActiveDataSource("Crv", "db[0-9]+");
  ConfigManager::AddActiveDataSource("", "x");
  m_Install.WriteBase("",
                      "<NetworkLayer Name=\"Crv\" Implementation=\"C\"/>\n"
                      "<NetworkLayer Name=\"Plm\" Implementation=\"C\"/>\n");
  m_Install.WriteDriver(
      "Crv",
      "<DataBase Name=\"db12\" Active=\"Yes\"/>\n<DataBase Name=\"mydb12\" Active=\"Yes\"/>\n");
  m_Install.WriteDriver("Plm", "<DataBase Name=\"p1\" Active=\"Yes\"/>\n");
  Init(Initialization::Server);
  EXPECT_EQ(Children("\\Quorin\\ActiveDataSources"), (std::vector<std::string>{"Crv"}));
  EXPECT_EQ(Children("\\Quorin\\ActiveDataSources\\Crv"), (std::vector<std::string>{"db[0-9]+"}));
  EXPECT_EQ(Children("\\Quorin\\DBDrivers"), (std::vector<std::string>{"Crv"}));
  EXPECT_EQ(Children("\\Quorin\\DBDrivers\\Crv"), (std::vector<std::string>{"db12"}));
  ConfigStartup::Destroy();
  Init(Initialization::Library);  // registrations do not reach Library mode
  EXPECT_EQ(Children("\\Quorin\\DBDrivers"), (std::vector<std::string>{"Crv", "Plm"}));
}

}  // namespace
