// Values and names as the files can write them: values of the wrong type where a loader
// reads them, very long names and values, names holding the node-path separator, non-ASCII
// text, and active-data-source patterns against long names. (How a text is typed, integers
// beyond 32 bits and a parameter file's longest line: the platform tests' tables.)
#include <gtest/gtest.h>

#include <ostream>

#include "robustness/startup_probe.h"
#include "support/manager_fixture.h"

namespace {

const std::string kDb1Loaded = "ok 'v1'";
const std::string kDb1Missing = "ok 5 \\Quorin\\DBDrivers\\Crv\\db1";

class ValuesTest : public ManagerTest {
 protected:
  ValuesTest() { m_Install.WriteBaseline(); }
  StartupProbe m_Probe{m_Install};
};

// The node a driver's setup file loads into is the FIRST of its name, among the DBDrivers
// children the main file made and among the ActiveDataSources children.
TEST_F(ValuesTest, DriversLoadIntoTheFirstNodeOfTheirName) {
  m_Install.WriteDocument(FileKind::Main,
                          "v1</Parameter><NetworkLayer Name=\"Crv\"/><NetworkLayer Name=\"Crv\"/>"
                          "<Parameter Name=\"Tail\">");
  EXPECT_EQ(m_Probe.Outcome(FileKind::DataAccess, Initialization::Library), kDb1Loaded);
  m_Install.WriteDocument(FileKind::Main, kBaselinePayload, kXmlDeclaration,
                          "<Settings><ActiveDataSources><NetworkLayer Name=\"Crv\"><DataBase "
                          "Name=\"db.\"/></NetworkLayer><NetworkLayer Name=\"Crv\"><DataBase "
                          "Name=\"none\"/></NetworkLayer></ActiveDataSources></Settings>\n");
  EXPECT_EQ(m_Probe.Outcome(FileKind::DataAccess, Initialization::Library), kDb1Loaded);
}

// A value of the wrong type where a loader reads it: the outcome in each mode.
struct WrongType {
  const char* Name;
  std::function<void(const TempInstallation&)> Change;
  FileKind Probe;
  std::string Library, Server;
};

void PrintTo(const WrongType& c, std::ostream* out) {
  *out << c.Name;
}

// db1's probe, then one more parameter of db1.
std::string AndThen(const std::string& name, const std::string& value) {
  return std::string(kBaselinePayload) + "</Parameter>" + ParameterElement(name, value) +
         "<Parameter Name=\"Tail\">";
}

class WrongTypeTest : public ValuesTest, public testing::WithParamInterface<WrongType> {};

TEST_P(WrongTypeTest, WhereTheValueIsRead) {
  const WrongType& c = GetParam();
  c.Change(m_Install);
  EXPECT_EQ(m_Probe.Outcome(c.Probe, Initialization::Library), c.Library);
  EXPECT_EQ(m_Probe.Outcome(c.Probe, Initialization::Server), c.Server);
}

const WrongType kWrongTypes[] = {
    // Main file: the loaders read the driver-area settings as texts or as a boolean.
    {"ConfigFileExtensionIsABoolean",
     [](const TempInstallation& f) { f.WriteEdited(FileKind::Main, ">dsf<", ">Yes<"); },
     FileKind::DataAccess, "10", kDb1Missing},
    {"CharSetListExtensionIsAnInteger",
     [](const TempInstallation& f) { f.WriteEdited(FileKind::Main, ">csl<", ">5<"); },
     FileKind::Main, "10", "10"},
    {"IgnoreFlagIsAText",
     [](const TempInstallation& f) {
       f.WriteEdited(FileKind::Main, ParameterElement("Ignore Driver Load Failure", "No"),
                     ParameterElement("Ignore Driver Load Failure", "maybe"));
     },
     FileKind::Main, "10", kDb1Loaded},
    // Data-access file: a value updates the existing field of its name, of the same type.
    {"ParameterOnTheTextDirectory",
     [](const TempInstallation& f) {
       f.WriteDocument(FileKind::DataAccess, AndThen("Directory", "5"));
     },
     FileKind::DataAccess, "10", kDb1Loaded},
    {"ExtensionsIsAnInteger",
     [](const TempInstallation& f) {
       f.WriteDocument(FileKind::DataAccess, AndThen("Extensions", "5"));
       f.MakeDir("d/Crv/extensions/pack");
     },
     FileKind::DataAccess, kDb1Loaded, kDb1Loaded},
    // Character-set tables: an unreadable "Unicode" counts as "CharSet"; an unreadable table
    // name means no table.
    {"UnicodeIsAnInteger",
     [](const TempInstallation& f) { f.WriteEdited(FileKind::DataAccess, ">CharSet<", ">5<"); },
     FileKind::CharSetTable, kDb1Loaded, kDb1Loaded},
    {"CharSetTableIsAnInteger",
     [](const TempInstallation& f) { f.WriteEdited(FileKind::DataAccess, ">crv<", ">5<"); },
     FileKind::CharSetTable, "ok 262 Crv", "ok 262 Crv"},
};

INSTANTIATE_TEST_SUITE_P(Loaders, WrongTypeTest, testing::ValuesIn(kWrongTypes),
                         [](const testing::TestParamInfo<WrongType>& info) {
                           return std::string(info.param.Name);
                         });

// One set of names written into the driver list, the setup, data-access and localised files
// and the main file; the names are made when the case runs (some are megabytes).
struct Names {
  const char* Label;
  std::vector<std::string> (*Make)();
};

void PrintTo(const Names& names, std::ostream* out) {
  *out << names.Label;
}

class NamesTest : public ValuesTest, public testing::WithParamInterface<Names> {};

std::string TextOf(const ConfigManager::Field& field) {
  std::string text;
  field.Value(text);
  return text;
}

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
  EXPECT_EQ(TextOf(manager.GetTree().Find(manager.DBDrivers()).value().Find(parameter)), value);
  EXPECT_EQ(Children("\\Quorin\\DBDrivers"), std::vector<std::string>{driver});
  EXPECT_EQ(Children("\\Quorin\\Localization"), std::vector<std::string>{driver});
  const tree_node<ConfigManager::Node>& node =
      *manager.GetTree().Find(manager.DBDrivers()).ch_begin();
  ASSERT_EQ(node.ch_size(), 1u);
  EXPECT_EQ(TextOf((*node.ch_begin()).value().Find(parameter)), value);

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
       return std::vector<std::string>{"\xC3\x96ra",
                                       "\xD0\x9E\xD1\x80\xD0\xB0\xD0\xBA\xD0\xBB",
                                       "\xE6\x95\xB0\xE6\x8D\xAE\xE5\xBA\x93",
                                       "\xCE\xB4"
                                       "b",
                                       "Gr\xC3\xB6\xC3\x9F"
                                       "e",
                                       "\xE2\x82\xAC 5",
                                       "\xC3\x9Cn\xC3\xAF"
                                       "c\xC3\xB6"
                                       "d\xC3\xA9 \xF0\x9F\x98\x80"};
     }},
    {"Megabyte",
     [] {
       std::vector<std::string> names;
       for (char c : std::string("DABCNVT")) names.push_back(std::string(1 << 20, c));
       return names;
     }},
};

INSTANTIATE_TEST_SUITE_P(Sets, NamesTest, testing::ValuesIn(kNames),
                         [](const testing::TestParamInfo<Names>& info) {
                           return std::string(info.param.Label);
                         });

// An active-data-source pattern against a long database name, placed before db1: written in
// the main file (Library mode) and registered by the host (Server mode, in the child alone).
// Matching never blows the C stack; a match that reaches its limits gives up with 283, which
// fails the data-access file.
struct PatternCase {
  const char* Name;
  const char* Pattern;
  std::string (*Database)();
  std::string Library, Server;  // the outcome in each mode
};

void PrintTo(const PatternCase& c, std::ostream* out) {
  *out << c.Name;
}

class PatternTest : public ValuesTest, public testing::WithParamInterface<PatternCase> {};

TEST_P(PatternTest, MatchesOrGivesUpWithoutCrashing) {
  const PatternCase& c = GetParam();
  m_Install.WriteEdited(
      FileKind::DataAccess, "<DataBase Name=\"db1\"",
      "<DataBase Name=\"" + c.Database() + "\" Active=\"Yes\"/>\n" + "<DataBase Name=\"db1\"");
  m_Install.WriteDocument(FileKind::Main, kBaselinePayload, kXmlDeclaration,
                          "<Settings><ActiveDataSources><NetworkLayer Name=\"Crv\"><DataBase "
                          "Name=\"db1\"/><DataBase Name=\"" +
                              std::string(c.Pattern) +
                              "\"/></NetworkLayer></ActiveDataSources></Settings>\n");
  EXPECT_EQ(InChild([&] { return m_Probe.Outcome(FileKind::DataAccess, Initialization::Library); }),
            c.Library);
  EXPECT_EQ(InChild([&] {
              ConfigManager::AddActiveDataSource("Crv", "db1");
              ConfigManager::AddActiveDataSource("Crv", c.Pattern);
              return m_Probe.Outcome(FileKind::DataAccess, Initialization::Server);
            }),
            c.Server);
}

// Up to the first two the old matcher recursed once per character: 9,000 overflowed 8 MiB.
const PatternCase kPatterns[] = {
    {"RepeatedGroup", "crv(_|[a-z0-9])*", [] { return "crv" + std::string(100000, 'a'); },
     kDb1Loaded, kDb1Loaded},
    {"RepeatedAnyCharacter", "crv(?:.)*", [] { return "crv" + std::string(100000, 'a'); },
     kDb1Loaded, kDb1Loaded},
    {"BeyondTheMemoryLimit", "(a|b)*", [] { return std::string(1000000, 'a'); }, "10", kDb1Missing},
    {"CatastrophicBacktracking", "(x+x+)+y", [] { return std::string(5000, 'x'); }, "10",
     kDb1Missing},
};

INSTANTIATE_TEST_SUITE_P(LongNames, PatternTest, testing::ValuesIn(kPatterns),
                         [](const testing::TestParamInfo<PatternCase>& info) {
                           return std::string(info.param.Name);
                         });

}  // namespace
