// Every query command on the sample installation: output shape, scriptable values, JSON, and
// errors that exit with status 1 and a sentence saying what to do.
#include <gtest/gtest.h>

#include <Poco/JSON/Array.h>
#include <Poco/JSON/Object.h>

#include "platform/process.h"
#include "tool_runner.h"

namespace {

using Poco::JSON::Array;
using Poco::JSON::Object;

struct ExactOutput {
  std::vector<std::string> Arguments;
  std::string Out;
};

TEST(CommandsTest, PrintExactlyWhatTheSampleHolds) {
  const ExactOutput cases[] = {
      {{"tree", "/Quorin/Traces"},
       "/Quorin/Traces\n"
       "├── Active: Bool = true\n"
       "├── ClassID: String = \"qr.logger.file\"\n"
       "├── Connections\n"
       "│   ├── Connect: Bool = true\n"
       "│   └── Disconnect: Bool = false\n"
       "└── Statements\n"
       "    ├── Prepare: Bool = false\n"
       "    └── Execute: Bool = false\n"},
      {{"get", "/Quorin/Traces"}, "Active: Bool = true\nClassID: String = \"qr.logger.file\"\n"},
      {{"get", "/Quorin/DBDrivers", "Connection Timeout"}, "60\n"},
      {{"get", "\\Quorin\\DBDrivers", "Connection Timeout", "--mode", "server"}, "10\n"},
      {{"get", "/Quorin/DBDrivers/Oracle/ora19", "Driver Capabilities"}, "Read,Write,Repository\n"},
      {{"drivers"},
       "DRIVER       NATIVE  DATABASES  ALIASES\n"
       "Oracle       yes     2          ORA, oracle\n"
       "PostgreSQL   yes     2          PG, postgres\n"
       "SQLite       yes     1          LITE\n"
       "JDBC Bridge  no      -          JDBC\n"},
      {{"databases", "PG"},
       "Driver PostgreSQL, 2 databases:\n"
       "pg15\n  aliases:    PG15\n  library:    libpq.so.5\n  directory:  drivers/postgres\n"
       "pg16\n  aliases:    PG16\n  library:    libpq.so.5\n  directory:  drivers/postgres\n"},
      {{"databases", "JDBC"},
       "Driver JDBC Bridge is not native (not implemented in C): the library loads no "
       "databases for it.\n"},
      {{"resolve", "ORA"}, "Oracle\n"},
      {{"resolve", "postgres", "PG16"}, "pg16\n"},
      {{"locale", "fr", "CA"},
       "identifier:  fr_CA\nlanguage:    fr\ncountry:     CA\ncharset:     ISO-8859-1\n"
       "platform:    " +
           Process::Defaults().Name + "\n"},
      {{"texts", "ORA", "de", "DE"},
       "driver:         Oracle\nlocale:         de_DE\nfile:           " + SampleDir() +
           "/driverde_DE.cfg\nExternal Name:  Oracle-Datenbank\n"
           "Comment:        Nativer Treiber für Oracle Database ab 19c\n"},
      {{"charset", "ISO-8859-1"}, "ISO-8859-1\n"},
      {{"charset", "ORA", "ORA19", "ISO-8859-15"}, "WE8ISO8859P15\n"},
  };
  for (const ExactOutput& expected : cases) {
    SCOPED_TRACE(::testing::PrintToString(expected.Arguments));
    const ToolRun run = RunQrConfig(expected.Arguments);
    EXPECT_EQ(0, run.Status) << run.Err;
    EXPECT_EQ(expected.Out, run.Out);
    EXPECT_EQ("", run.Err);
  }
}

TEST(CommandsTest, WholeTreeStartsAtTheRootAndIndentsEveryLevel) {
  const ToolRun run = RunQrConfig({"tree"});
  ASSERT_EQ(0, run.Status) << run.Err;
  EXPECT_EQ(0u, run.Out.find("\\Quorin\n├── Config Directory: String = \"" + SampleDir() + "\"\n"));
  for (const char* line : {"\n│   ├── Connection Timeout: Long = 60\n",
                           "\n│   │   │   └── Extensions: String = \"spatial,text\"\n",
                           "\n│       └── pg16\n", "\n└── Localization\n"}) {
    EXPECT_NE(std::string::npos, run.Out.find(line)) << line;
  }
}

struct FailingQuery {
  std::vector<std::string> Arguments;
  std::string Error;   // the error's own text
  std::string Advice;  // a part of what to do
};

TEST(CommandsTest, FailuresExitWithOneAndSayWhatToDo) {
  const std::string notLoaded =
      "the configuration in " + SampleDir() + " (from --config-dir) does not load: QRError 10: ";
  const FailingQuery cases[] = {
      {{"tree", "--config-dir", "/nonexistent/qr"},
       "the configuration in /nonexistent/qr (from --config-dir) does not load: QRError 264: "
       "cannot open or read the file \"/nonexistent/qr/driver.cfg\".",
       "Check that the file exists"},
      {{"drivers", "--platform", "Windows-x64"}, notLoaded, "Run 'qrconfig check'"},
      {{"get", "/Quorin/Nope"},
       "QRError 5: no node at path \"\\Quorin\\Nope\".",
       "'qrconfig tree'"},
      {{"get", "/Quorin", "Port"},
       "QRError 261: no field named \"Port\".",
       "'qrconfig get NODEPATH'"},
      {{"tree", ""}, "QRError 4: the node path has no levels.", "at least one level"},
      {{"databases", "MYSQL"}, "QRError 22: no driver named \"MYSQL\".", "'qrconfig drivers'"},
      {{"resolve", "ORA", "ora99"},
       "QRError 13: no database named \"ora99\".",
       "'qrconfig databases DRIVER'"},
      {{"locale", "xx"}, "QRError 270: unknown locale \"xx\".", "Locale entries of qr.cfg"},
      {{"charset", "EBCDIC"},
       "QRError 263: no character-set entry named \"EBCDIC\".",
       "character-set list"},
      {{"charset", "PG", "pg15", "UTF-8"},
       "QRError 262: no character-set table for driver \"PostgreSQL\".",
       "\"Unicode\" = CharSet"},
  };
  for (const FailingQuery& query : cases) {
    SCOPED_TRACE(::testing::PrintToString(query.Arguments));
    const ToolRun run = RunQrConfig(query.Arguments);
    EXPECT_EQ(1, run.Status);
    EXPECT_EQ("", run.Out);
    EXPECT_EQ(0u, run.Err.find("qrconfig: " + query.Error)) << run.Err;
    EXPECT_NE(std::string::npos, run.Err.find(query.Advice)) << run.Err;
  }
}

TEST(CommandsTest, ActiveSourcesInLibraryModeGetANote) {
  const ToolRun run = RunQrConfig({"resolve", "LITE", "--active", "SQLite=none"});
  EXPECT_EQ(0, run.Status);
  EXPECT_EQ("SQLite\n", run.Out);
  EXPECT_EQ(
      "qrconfig: note: --active has no effect in library mode, where the main file's "
      "ActiveDataSources section applies; add --mode server.\n",
      run.Err);
}

TEST(CommandsTest, JsonOutputsAreValidAndCarryTheSameData) {
  Poco::Dynamic::Var tree = ParseJson(RunQrConfig({"tree", "--json"}).Out);
  auto root = tree.extract<Object::Ptr>();
  EXPECT_EQ("\\Quorin", root->getValue<std::string>("path"));
  auto field = root->getArray("fields")->getObject(0);
  EXPECT_EQ("Config Directory", field->getValue<std::string>("name"));
  EXPECT_EQ(SampleDir(), field->getValue<std::string>("value"));
  EXPECT_EQ("DBDrivers", root->getArray("children")->getObject(0)->getValue<std::string>("name"));

  auto port =
      ParseJson(RunQrConfig({"get", "/Quorin/DBDrivers/Oracle/ora21", "Port", "--json"}).Out)
          .extract<Object::Ptr>();
  EXPECT_EQ("Long", port->getValue<std::string>("type"));
  EXPECT_EQ(1522, port->getValue<int>("value"));

  auto drivers = ParseJson(RunQrConfig({"drivers", "--json"}).Out).extract<Object::Ptr>();
  auto oracle = drivers->getArray("drivers")->getObject(0);
  EXPECT_EQ("Oracle", oracle->getValue<std::string>("name"));
  EXPECT_EQ(2, oracle->getValue<int>("databases"));
  EXPECT_EQ("oracle", oracle->getArray("aliases")->getElement<std::string>(1));
  auto jdbc = drivers->getArray("drivers")->getObject(3);
  EXPECT_FALSE(jdbc->getValue<bool>("loaded"));

  auto databases =
      ParseJson(RunQrConfig({"databases", "ORA", "--json"}).Out).extract<Object::Ptr>();
  auto ora21 = databases->getArray("databases")->getObject(1);
  EXPECT_EQ("Undefined", ora21->getValue<std::string>("library"));
  EXPECT_EQ("libnnz21.so", ora21->getArray("libraries")->getElement<std::string>(1));

  auto texts = ParseJson(RunQrConfig({"texts", "ORA", "fr", "--json"}).Out).extract<Object::Ptr>();
  EXPECT_EQ("Base de données Oracle", texts->getValue<std::string>("External Name"));

  for (const std::vector<std::string>& line :
       std::vector<std::vector<std::string>>{{"resolve", "PG", "PG15", "--json"},
                                             {"locale", "en", "--json"},
                                             {"charset", "UTF-8", "--json"},
                                             {"get", "/Quorin/Traces", "--json"},
                                             {"check", "--json"}}) {
    SCOPED_TRACE(::testing::PrintToString(line));
    const ToolRun run = RunQrConfig(line);
    EXPECT_EQ(0, run.Status);
    EXPECT_FALSE(ParseJson(run.Out).isEmpty());
  }
}

}  // namespace
