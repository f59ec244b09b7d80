// Values and names as the files can write them: integers at and beyond 32 bits, values of
// the wrong type where a loader reads them, very long names and values, names holding the
// node-path separator and non-ASCII text.
#include <gtest/gtest.h>

#include <Poco/File.h>

#include <ostream>

#include "robustness/probe_installation.h"
#include "support/manager_fixture.h"

namespace {

class ValuesTest : public ManagerTest {
 protected:
  ValuesTest() { m_Files.WriteBaseline(); }
  ProbeInstallation m_Files{m_Install};
};

// A value is typed by its whole text; integers must fit 32 bits, anything else stays text.
TEST_F(ValuesTest, IntegerTextsBeyond32BitsStayText) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"2147483647", "2147483647"},
      {"-2147483648", "-2147483648"},
      {"2147483648", "'2147483648'"},
      {"-2147483649", "'-2147483649'"},
      {"99999999999999999999999999999999999999", "'99999999999999999999999999999999999999'"},
      {" 5", "' 5'"},
  };
  for (FileKind kind : {FileKind::Main, FileKind::DataAccess}) {
    for (const auto& [text, probe] : cases) {
      SCOPED_TRACE(std::string(KindName(kind)) + " " + text);
      m_Files.WriteDocument(kind, text);
      EXPECT_EQ(m_Files.Outcome(kind, Initialization::Library), "ok " + probe);
    }
    m_Files.WriteDocument(kind, kBaselinePayload);
  }
}

struct WrongType {
  const char* Name;
  std::function<void(const ProbeInstallation&)> Change;
  FileKind Probe;
  std::string Library;  // the outcome in each mode
  std::string Server;
};

void PrintTo(const WrongType& c, std::ostream* out) {
  *out << c.Name;
}

// db1's probe, then one more parameter of db1.
std::string AndThen(const std::string& name, const std::string& value) {
  return std::string(kBaselinePayload) + "</Parameter>" + ParameterElement(name, value) +
         "<Parameter Name=\"Tail\">";
}

const std::string kDb1Missing = "ok 5 \\Quorin\\DBDrivers\\Crv\\db1";

class WrongTypeTest : public ValuesTest, public testing::WithParamInterface<WrongType> {};

TEST_P(WrongTypeTest, WhereTheValueIsRead) {
  const WrongType& c = GetParam();
  c.Change(m_Files);
  EXPECT_EQ(m_Files.Outcome(c.Probe, Initialization::Library), c.Library);
  EXPECT_EQ(m_Files.Outcome(c.Probe, Initialization::Server), c.Server);
}

const std::vector<WrongType> kWrongTypes = {
    // Main file: the loaders read the driver-area settings as texts or as a boolean.
    {"ConfigFileExtensionIsABoolean",
     [](const ProbeInstallation& f) { f.WriteEdited(FileKind::Main, ">dsf<", ">Yes<"); },
     FileKind::DataAccess, "10", kDb1Missing},
    {"CharSetListExtensionIsAnInteger",
     [](const ProbeInstallation& f) { f.WriteEdited(FileKind::Main, ">csl<", ">5<"); },
     FileKind::Main, "10", "10"},
    {"IgnoreFlagIsAText",
     [](const ProbeInstallation& f) {
       f.WriteEdited(FileKind::Main, ParameterElement("Ignore Driver Load Failure", "No"),
                     ParameterElement("Ignore Driver Load Failure", "maybe"));
     },
     FileKind::Main, "10", "ok 'v1'"},
    // Data-access file: a value updates the existing field of its name, of the same type.
    {"ParameterOnTheTextDirectory",
     [](const ProbeInstallation& f) {
       f.WriteDocument(FileKind::DataAccess, AndThen("Directory", "5"));
     },
     FileKind::DataAccess, "10", "ok 'v1'"},
    {"ExtensionsIsAnInteger",
     [](const ProbeInstallation& f) {
       f.WriteDocument(FileKind::DataAccess, AndThen("Extensions", "5"));
       f.Install().MakeDir("d/Crv/extensions/pack");
     },
     FileKind::DataAccess, "ok 'v1'", "ok 'v1'"},
    // Character-set tables: an unreadable "Unicode" counts as "CharSet"; an unreadable table
    // name means no table.
    {"UnicodeIsAnInteger",
     [](const ProbeInstallation& f) { f.WriteEdited(FileKind::DataAccess, ">CharSet<", ">5<"); },
     FileKind::CharSetTable, "ok 'v1'", "ok 'v1'"},
    {"CharSetTableIsAnInteger",
     [](const ProbeInstallation& f) { f.WriteEdited(FileKind::DataAccess, ">crv<", ">5<"); },
     FileKind::CharSetTable, "ok 262 Crv", "ok 262 Crv"},
};

INSTANTIATE_TEST_SUITE_P(Loaders, WrongTypeTest, testing::ValuesIn(kWrongTypes),
                         [](const testing::TestParamInfo<WrongType>& info) {
                           return std::string(info.param.Name);
                         });

// One set of names written into the driver list, the setup, data-access and localised files
// and the main file.
struct Names {
  const char* Label;
  std::string Driver, Alias, Database, DatabaseAlias, Parameter, Value, Text;
};

void PrintTo(const Names& names, std::ostream* out) {
  *out << names.Label;
}

class NamesTest : public ValuesTest, public testing::WithParamInterface<Names> {
 protected:
  void WriteNames(const Names& n) {
    const std::string header = kXmlDeclaration;
    m_Install.Write("driver.cfg", header + "<DriverList><NetworkLayer Name=\"" + n.Driver +
                                      "\" Implementation=\"C\">\n<Alias>" + n.Alias +
                                      "</Alias>\n</NetworkLayer></DriverList>\n");
    m_Install.Write("setup/crv.setup",
                    header + "<Setup><NetworkLayer Name=\"" + n.Driver +
                        "\"/>\n<Directory>d/Crv</Directory>\n<DataFileName>Crv</DataFileName>\n"
                        "</Setup>\n");
    m_Install.Write("d/Crv/Crv.dsf",
                    header + "<DataAccess><Defaults>" + ParameterElement("CharSet Table", "crv") +
                        "</Defaults>\n<DataBase Name=\"" + n.Database +
                        "\" Active=\"Yes\">\n<Alias>" + n.DatabaseAlias + "</Alias>\n" +
                        ParameterElement(n.Parameter, n.Value) + "\n</DataBase></DataAccess>\n");
    m_Install.Write("driveren.cfg", header + "<DriverTexts><NetworkLayer Name=\"" + n.Driver +
                                        "\">\n<Message id=\"Name\">" + n.Text +
                                        "</Message>\n</NetworkLayer></DriverTexts>\n");
    m_Files.WriteDocument(FileKind::Main, kBaselinePayload, kXmlDeclaration,
                          "<Settings>" + ParameterElement(n.Parameter, n.Value) + "</Settings>\n");
  }
};

std::string TextOf(const ConfigManager::Field& field) {
  std::string text;
  field.Value(text);
  return text;
}

TEST_P(NamesTest, LoadAndResolve) {
  const Names& n = GetParam();
  WriteNames(n);
  ConfigManager& manager = Init(Initialization::Library);

  EXPECT_EQ(manager.ResolveDriverName(n.Alias), n.Driver);
  EXPECT_EQ(manager.ResolveDatabaseName(n.Driver, n.DatabaseAlias), n.Database);
  EXPECT_EQ(manager.GetCharSetTableEntry(n.Driver, n.Database, "UTF-8"), "DB_UTF8");
  EXPECT_EQ(TextOf(manager.GetTree().Find(manager.DBDrivers()).value().Find(n.Parameter)), n.Value);
  EXPECT_EQ(Children("\\Quorin\\DBDrivers"), std::vector<std::string>{n.Driver});
  EXPECT_EQ(Children("\\Quorin\\Localization"), std::vector<std::string>{n.Driver});
  const tree_node<ConfigManager::Node>& driver =
      *manager.GetTree().Find(manager.DBDrivers()).ch_begin();
  ASSERT_EQ(driver.ch_size(), 1u);
  EXPECT_EQ(TextOf((*driver.ch_begin()).value().Find(n.Parameter)), n.Value);

  // A name holding the separator adds levels to a node path: such a node cannot be found by
  // path, and its localised texts cannot be asked for.
  const ConfigManager::NodePath path(
      static_cast<const char*>(ConfigManager::NodePath(manager.DBDrivers().text(), n.Driver)),
      n.Database);
  const Quorin::LocaleDescriptor& english = manager.GetLocale("en", "");
  if (n.Driver.find('\\') != std::string::npos) {
    QRError notFound = CatchQRError([&] { manager.GetTree().Find(path); });
    EXPECT_EQ(notFound.Code(), 5);
    EXPECT_EQ(notFound.Argument().str(), path.text());
    QRError unknown = CatchQRError([&] { manager.GetLocalizedDriver(n.Driver, english); });
    EXPECT_EQ(unknown.Code(), 22);
    EXPECT_EQ(unknown.Argument().str(), n.Driver);
  } else {
    EXPECT_EQ(manager.GetTree().Find(path).value().Name(), n.Database);
    orv_utf8string text;
    manager.GetLocalizedDriver(n.Driver, english).value().Find("External Name").Value(text);
    EXPECT_EQ(text.str(), n.Text);
  }
}

INSTANTIATE_TEST_SUITE_P(
    Sets, NamesTest,
    testing::Values(Names{"Separators", "Or\\a", "O\\1", "db\\1", "D\\1", "P\\1", "v\\1", "t\\1"},
                    Names{"NonAscii", "\xC3\x96ra", "\xD0\x9E\xD1\x80\xD0\xB0\xD0\xBA\xD0\xBB",
                          "\xE6\x95\xB0\xE6\x8D\xAE\xE5\xBA\x93",
                          "\xCE\xB4"
                          "b",
                          "Gr\xC3\xB6\xC3\x9F"
                          "e",
                          "\xE2\x82\xAC 5",
                          "\xC3\x9Cn\xC3\xAF"
                          "c\xC3\xB6"
                          "d\xC3\xA9 \xF0\x9F\x98\x80"},
                    Names{"Megabyte", std::string(1 << 20, 'D'), std::string(1 << 20, 'A'),
                          std::string(1 << 20, 'B'), std::string(1 << 20, 'C'),
                          std::string(1 << 20, 'N'), std::string(1 << 20, 'V'),
                          std::string(1 << 20, 'T')}),
    [](const testing::TestParamInfo<Names>& info) { return std::string(info.param.Label); });

// A parameter-file line may hold SFile::kMaxLineBytes bytes; a longer one makes the file
// malformed: the table is dropped, the platform list ends the start-up.
TEST_F(ValuesTest, ParameterFileLinesUpToTheLimit) {
  const std::size_t limit = SFile::kMaxLineBytes;
  const std::string longest = "Probe = " + std::string(limit - 8, 'x');
  m_Files.Write(FileKind::CharSetTable, "[CharSets]\n" + longest + "\n");
  EXPECT_EQ(m_Files.Outcome(FileKind::CharSetTable, Initialization::Library),
            "ok '" + std::string(limit - 8, 'x') + "'");
  m_Files.Write(FileKind::CharSetTable, "[CharSets]\n" + longest + "x\n");
  EXPECT_EQ(m_Files.Outcome(FileKind::CharSetTable, Initialization::Library), "ok 262 Crv");
  m_Files.Write(FileKind::PlatformList, "[TestOS]\nUTF-8 = UTF-8\n" + longest + "x\n");
  EXPECT_EQ(m_Files.Outcome(FileKind::PlatformList, Initialization::Library), "10");
}

// The node a driver's setup file loads into is the FIRST of its name, among the DBDrivers
// children the main file made and among the ActiveDataSources children.
TEST_F(ValuesTest, DriversLoadIntoTheFirstNodeOfTheirName) {
  m_Files.WriteDocument(FileKind::Main,
                        "v1</Parameter><NetworkLayer Name=\"Crv\"/><NetworkLayer Name=\"Crv\"/>"
                        "<Parameter Name=\"Tail\">");
  EXPECT_EQ(m_Files.Outcome(FileKind::DataAccess, Initialization::Library), "ok 'v1'");
  m_Files.WriteDocument(FileKind::Main, kBaselinePayload, kXmlDeclaration,
                        "<Settings><ActiveDataSources><NetworkLayer Name=\"Crv\"><DataBase "
                        "Name=\"db.\"/></NetworkLayer><NetworkLayer Name=\"Crv\"><DataBase "
                        "Name=\"none\"/></NetworkLayer></ActiveDataSources></Settings>\n");
  EXPECT_EQ(m_Files.Outcome(FileKind::DataAccess, Initialization::Library), "ok 'v1'");
}

// An active-data-source pattern against a long database name, placed before db1: written in
// the main file (Library mode) and registered by the host (Server mode, in the child alone).
// Matching never blows the C stack; a match that reaches its limits gives up with 283, which
// fails the data-access file.
struct PatternCase {
  const char* Name;
  std::string Pattern, Database;
  std::string Library, Server;  // the outcome in each mode
};

void PrintTo(const PatternCase& c, std::ostream* out) {
  *out << c.Name;
}

class PatternTest : public ValuesTest, public testing::WithParamInterface<PatternCase> {};

TEST_P(PatternTest, MatchesOrGivesUpWithoutCrashing) {
  const PatternCase& c = GetParam();
  m_Files.WriteEdited(
      FileKind::DataAccess, "<DataBase Name=\"db1\"",
      "<DataBase Name=\"" + c.Database + "\" Active=\"Yes\"/>\n" + "<DataBase Name=\"db1\"");
  m_Files.WriteDocument(FileKind::Main, kBaselinePayload, kXmlDeclaration,
                        "<Settings><ActiveDataSources><NetworkLayer Name=\"Crv\"><DataBase "
                        "Name=\"db1\"/><DataBase Name=\"" +
                            c.Pattern + "\"/></NetworkLayer></ActiveDataSources></Settings>\n");
  EXPECT_EQ(InChild([&] { return m_Files.Outcome(FileKind::DataAccess, Initialization::Library); }),
            c.Library);
  EXPECT_EQ(InChild([&] {
              ConfigManager::AddActiveDataSource("Crv", "db1");
              ConfigManager::AddActiveDataSource("Crv", c.Pattern);
              return m_Files.Outcome(FileKind::DataAccess, Initialization::Server);
            }),
            c.Server);
}

const std::string kDb1Loaded = "ok 'v1'";

INSTANTIATE_TEST_SUITE_P(
    LongNames, PatternTest,
    testing::Values(
        // Up to here the old matcher recursed once per character: 9,000 overflowed 8 MiB.
        PatternCase{"RepeatedGroup", "crv(_|[a-z0-9])*", "crv" + std::string(100000, 'a'),
                    kDb1Loaded, kDb1Loaded},
        PatternCase{"RepeatedAnyCharacter", "crv(?:.)*", "crv" + std::string(100000, 'a'),
                    kDb1Loaded, kDb1Loaded},
        PatternCase{"BeyondTheMemoryLimit", "(a|b)*", std::string(1000000, 'a'), "10", kDb1Missing},
        PatternCase{"CatastrophicBacktracking", "(x+x+)+y", std::string(5000, 'x'), "10",
                    kDb1Missing}),
    [](const testing::TestParamInfo<PatternCase>& info) { return std::string(info.param.Name); });

}  // namespace
