// Names as the files can write them: very long names and values, names holding the node-path
// separator, non-ASCII text. (Values of the wrong type and patterns against long names: the
// broken-file tables; how a text is typed, integers beyond 32 bits and a parameter file's
// longest line: the platform tests' tables.)
#include <gtest/gtest.h>

#include <ostream>

#include "support/manager_fixture.h"
#include "tests/model/model_test_support.h"

namespace {

// One set of names written into the driver list, the setup, data-access and localised files
// and the main file; the names are made when the case runs (some are megabytes).
struct Names {
  const char* Label;
  std::vector<std::string> (*Make)();
};

void PrintTo(const Names& names, std::ostream* out) {
  *out << names.Label;
}

class NamesTest : public ManagerTest, public testing::WithParamInterface<Names> {
 protected:
  NamesTest() { m_Install.WriteBaseline(); }
};

TEST_P(NamesTest, LoadAndResolve) {
  const std::vector<std::string> names = GetParam().Make();
  const std::string &driver = names[0], &alias = names[1], &database = names[2],
                    &databaseAlias = names[3], &parameter = names[4], &value = names[5],
                    &text = names[6];
  m_Install.Write("driver.cfg", "<DriverList><NetworkLayer Name=\"" + driver +
                                    "\" Implementation=\"C\">\n<Alias>" + alias +
                                    "</Alias>\n</NetworkLayer></DriverList>\n");
  m_Install.WriteDriver(driver,
                        "<Defaults>" + ParameterElement("CharSet Table", "crv") +
                            "</Defaults>\n<DataBase Name=\"" + database +
                            "\" Active=\"Yes\">\n<Alias>" + databaseAlias + "</Alias>\n" +
                            ParameterElement(parameter, value) + "\n</DataBase>\n",
                        "Crv");
  m_Install.Write("driveren.cfg", "<DriverTexts><NetworkLayer Name=\"" + driver +
                                      "\">\n<Message id=\"Name\">" + text +
                                      "</Message>\n</NetworkLayer></DriverTexts>\n");
  m_Install.WriteDocument(FileKind::Main, kBaselinePayload, kXmlDeclaration,
                          "<Settings>" + ParameterElement(parameter, value) + "</Settings>\n");
  ConfigManager& manager = Init(Initialization::Library);

  EXPECT_EQ(manager.ResolveDriverName(alias), driver);
  EXPECT_EQ(manager.ResolveDatabaseName(driver, databaseAlias), database);
  EXPECT_EQ(manager.GetCharSetTableEntry(driver, database, "UTF-8"), "DB_UTF8");
  const std::string quoted = "'" + value + "'";
  EXPECT_EQ(ValueText(manager.GetTree().Find(manager.DBDrivers()).value().Find(parameter)), quoted);
  EXPECT_EQ(Children("\\Quorin\\DBDrivers"), std::vector<std::string>{driver});
  EXPECT_EQ(Children("\\Quorin\\Localization"), std::vector<std::string>{driver});
  const tree_node<ConfigManager::Node>& node =
      *manager.GetTree().Find(manager.DBDrivers()).ch_begin();
  ASSERT_EQ(node.ch_size(), 1u);
  EXPECT_EQ(ValueText((*node.ch_begin()).value().Find(parameter)), quoted);

  // A name holding the separator adds levels to a node path: such a node cannot be found by
  // path, and its localised texts cannot be asked for.
  const ConfigManager::NodePath path(
      static_cast<const char*>(ConfigManager::NodePath(manager.DBDrivers().text(), driver)),
      database);
  const Quorin::LocaleDescriptor& english = manager.GetLocale("en", "");
  if (driver.find('\\') != std::string::npos) {
    QRError notFound = CatchQRError([&] { manager.GetTree().Find(path); });
    EXPECT_EQ(notFound.Code(), 5);
    EXPECT_EQ(notFound.Argument().str(), path.text());
    QRError unknown = CatchQRError([&] { manager.GetLocalizedDriver(driver, english); });
    EXPECT_EQ(unknown.Code(), 22);
    EXPECT_EQ(unknown.Argument().str(), driver);
  } else {
    EXPECT_EQ(manager.GetTree().Find(path).value().Name(), database);
    orv_utf8string external;
    manager.GetLocalizedDriver(driver, english).value().Find("External Name").Value(external);
    EXPECT_EQ(external.str(), text);
  }
}

// Driver, alias, database, database alias, parameter, value, localised text.
const Names kNames[] = {
    {"Separators",
     [] {
       return std::vector<std::string>{"Or\\a", "O\\1", "db\\1", "D\\1", "P\\1", "v\\1", "t\\1"};
     }},
    {"NonAscii",
     [] {
       return std::vector<std::string>{"Öra", "Оракл", "数据库", "δb", "Größe", "€ 5", "Ünïcödé 😀"};
     }},
    {"Megabyte",
     [] {
       std::vector<std::string> names;
       for (char c : std::string("DABCNVT")) names.push_back(std::string(1 << 20, c));
       return names;
     }},
};

INSTANTIATE_TEST_SUITE_P(Sets, NamesTest, testing::ValuesIn(kNames),
                         testing::PrintToStringParamName());

}  // namespace
