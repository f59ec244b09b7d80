// Every query command on the sample installation: output shape, scriptable values, JSON, and
// errors that exit with status 1 and a sentence saying what to do.
#include <gtest/gtest.h>

#include <sstream>
#include <tuple>

#include <Poco/File.h>

#include <Poco/JSON/Object.h>
#include <Poco/JSON/Query.h>

#include "app/tool.h"
#include "qr_config/platform/process.h"
#include "support/temp_installation.h"
#include "tool_runner.h"

namespace {

using Poco::JSON::Object;

// The member of the JSON text `json` at `path` ("fields[0].name"), as text.
std::string JsonAt(const std::string& json, const std::string& path) {
  return Poco::JSON::Query(ParseJson(json)).find(path).toString();
}

struct ExactOutput {
  std::vector<std::string> Arguments;
  std::string Out;
  std::string Err = "";
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
      {{"drivers"},
       "DRIVER        NATIVE  DATABASES  ALIASES\n"
       "Corvane       yes     2          CRV, corvane\n"
       "Pelmora       yes     2          PLM, pelmora\n"
       "Filetta       yes     1          LITE\n"
       "Relay Bridge  no      -          RELAY\n"},
      {{"databases", "PLM"},
       "Driver Pelmora, 2 databases:\n"
       "plm15\n  aliases:    PLM15\n  library:    libplmc.so.5\n  directory:  drivers/pelmora\n"
       "plm16\n  aliases:    PLM16\n  library:    libplmc.so.5\n  directory:  drivers/pelmora\n"},
      {{"databases", "RELAY"},
       "Driver Relay Bridge is not native (not implemented in C): the library loads no "
       "databases for it.\n"},
      {{"resolve", "CRV"}, "Corvane\n"},
      {{"resolve", "pelmora", "PLM16"}, "plm16\n"},
      {{"resolve", "LITE", "--active", "Filetta=none"},
       "Filetta\n",
       "qrconfig: note: --active has no effect in library mode, where the main file's "
       "ActiveDataSources section applies; add --mode server.\n"},
      {{"resolve", "PLM", "PLM15", "--json"},
       "{\n  \"driver\": \"Pelmora\",\n  \"database\": \"plm15\"\n}\n"},
      {{"locale", "fr", "CA"},
       "identifier:  fr_CA\nlanguage:    fr\ncountry:     CA\ncharset:     ISO-8859-1\n"
       "platform:    " +
           Process::Defaults().Name + "\n"},
      {{"texts", "CRV", "de", "DE"},
       "driver:         Corvane\nlocale:         de_DE\nfile:           " + SampleDir() +
           "/driverde_DE.cfg\nExternal Name:  Corvane-Datenbank\n"
           "Comment:        Nativer Treiber für Corvane ab Version 19\n"},
      {{"charset", "CRV", "CRV19", "ISO-8859-15"}, "DB_LATIN9\n"},
      {{"names", "drivers"}, "Corvane\nPelmora\nFiletta\nRelay Bridge\n"},
      {{"names", "fields", "/Quorin/Traces"}, "Active\nClassID\n"},
      {{"names", "nodes", "\\Quorin\\Traces"},
       "/Quorin/Traces\n/Quorin/Traces/Connections\n/Quorin/Traces/Statements\n"},
      {{"names", "commands", "--config-dir", "/nonexistent"},
       "tree\nget\ndrivers\ndatabases\nresolve\nlocale\ntexts\ncharset\ncheck\nlist\nexplain\n"
       "diff\nnames\nhelp\n"},
      {{"explain", "/Quorin/DBDrivers", "Connection Timeout"},
       "/Quorin/DBDrivers\n  Connection Timeout = 60   " + SampleDir() +
           "/qr.cfg:49 (Library section), replaces 30 from " + SampleDir() +
           "/qr.cfg:35 (Settings)\n"},
  };
  for (const ExactOutput& expected : cases) {
    SCOPED_TRACE(::testing::PrintToString(expected.Arguments));
    const ToolRun run = RunQrConfig(expected.Arguments);
    EXPECT_EQ(0, run.Status) << run.Err;
    EXPECT_EQ(expected.Out, run.Out);
    EXPECT_EQ(expected.Err, run.Err);
  }
}

// list prints every field on one tab-separated line, with its origin on request; diff pairs
// the fields of two installations, whatever directory each lives in.
TEST(CommandsTest, ListAndDiffCompareEffectiveConfigurations) {
  const ToolRun list = RunQrConfig({"list", "--show-origin"});
  ASSERT_EQ(0, list.Status) << list.Err;
  EXPECT_NE(std::string::npos,
            list.Out.find("\n\\Quorin\\DBDrivers\tConnection Timeout\tLong\t60\t" + SampleDir() +
                          "/qr.cfg:49\n"));
  EXPECT_NE(std::string::npos, list.Out.find("\tStatus\tLong\t0\t(start-up fall-back)\n"));
  TempInstallation copy;
  Poco::File(SampleDir()).copyTo(copy.Dir() + "/copy");
  const std::string other = copy.Dir() + "/copy";
  EXPECT_EQ(0, RunQrConfig({"diff", SampleDir(), other}).Status);
  copy.Write("copy/drivers/filetta/filetta.dsf", "<DataAccess/>\n");
  const ToolRun diff = RunQrConfig({"diff", SampleDir(), other});
  EXPECT_EQ(1, diff.Status);
  EXPECT_EQ(0u, diff.Out.find("--- " + SampleDir() + "\n+++ " + other + "\n-\\Quorin\\"));
  EXPECT_EQ(std::string::npos, diff.Out.find("\n+\\")) << diff.Out;  // only removals
  const ToolRun json = RunQrConfig({"diff", SampleDir(), other, "--json"});
  EXPECT_EQ(1, json.Status);
  EXPECT_EQ("-", JsonAt(json.Out, "differences[0].side"));
  EXPECT_EQ(2, RunQrConfig({"diff", SampleDir(), "/nonexistent"}).Status);
}

struct FailingQuery {
  std::vector<std::string> Arguments;
  std::string Error;        // the error's own text
  std::string Advice = "";  // a part of what to do
};

// Each failure twice: as a sentence on standard error, and under --json as one object on
// standard output with the same message and advice, so that scripts never parse stderr.
TEST(CommandsTest, FailuresExitWithOneAndSayWhatToDoAsTextAndAsJson) {
  const std::string notLoaded =
      "the configuration in " + SampleDir() + " (from --config-dir) does not load: QRError 10: ";
  const FailingQuery cases[] = {
      {{"tree", "--config-dir", "/nonexistent/qr"},
       "the configuration directory /nonexistent/qr (from --config-dir) does not exist.\n"},
      {{"tree", "--param=Config Directory=" + SampleDir() + "/setup"},
       "the configuration directory " + SampleDir() +
           "/setup (from --param) holds no configuration: it has neither qr.cfg nor "
           "driver.cfg.\n"},
      {{"tree", "--config-dir", SampleDir() + "/qr.cfg"},
       "the configuration directory " + SampleDir() +
           "/qr.cfg (from --config-dir) is not a "
           "directory.\n"},
      {{"drivers", "--platform", "Windows-x64"}, notLoaded, "Run 'qrconfig check'"},
      {{"get", "/Quorin/DBDrivers/Corvane/crv19", "port"},
       "QRError 261: no field named \"port\" (did you mean \"Port\"?).",
       "field names are case-sensitive"},
      {{"tree", "/Quorin/DBDriver/Corvane"},
       "QRError 5: no node at path \"\\Quorin\\DBDriver\\Corvane\" (did you mean "
       "\"/Quorin/DBDrivers/Corvane\"?).",
       "'qrconfig tree'"},
      {{"databases", "Corvan"},
       "QRError 22: no driver named \"Corvan\" (did you mean \"Corvane\"?).",
       "'qrconfig drivers'"},
      {{"tree", ""}, "QRError 4: the node path has no levels.", "at least one level"},
      {{"resolve", "CRV", "crv99"},
       "QRError 13: no database named \"crv99\" (did you mean \"CRV19\"?).",
       "'qrconfig databases DRIVER'"},
      {{"locale", "xx"}, "QRError 270: unknown locale \"xx\".", "Locale entries"},
      {{"charset", "EBCDIC"},
       "QRError 263: no character-set entry named \"EBCDIC\".",
       "character-set list"},
      {{"charset", "PLM", "plm15", "UTF-8"},
       "QRError 262: no character-set table for driver \"Pelmora\".",
       "\"Unicode\" = CharSet"},
  };
  for (const FailingQuery& query : cases) {
    SCOPED_TRACE(::testing::PrintToString(query.Arguments));
    const ToolRun run = RunQrConfig(query.Arguments);
    EXPECT_EQ(1, run.Status);
    EXPECT_EQ("", run.Out);
    EXPECT_EQ(0u, run.Err.find("qrconfig: " + query.Error)) << run.Err;
    EXPECT_NE(std::string::npos, run.Err.find(query.Advice)) << run.Err;

    std::vector<std::string> arguments = query.Arguments;
    arguments.push_back("--json");
    const ToolRun json = RunQrConfig(arguments);
    EXPECT_EQ(1, json.Status);
    EXPECT_EQ("", json.Err);
    const Poco::Dynamic::Var parsed = ParseJson(json.Out);
    if (parsed.isEmpty()) continue;
    auto error = parsed.extract<Object::Ptr>()->getObject("error");
    ASSERT_FALSE(error.isNull());
    EXPECT_EQ(1, error->getValue<int>("status"));
    const bool directory = query.Error.rfind("the configuration directory", 0) == 0;
    const bool loads = query.Error.rfind("the configuration in", 0) == 0;
    EXPECT_EQ(directory ? "directory"
              : loads   ? "load"
                        : "lookup",
              error->getValue<std::string>("kind"));
    EXPECT_EQ(directory, error->isNull("code"));
    EXPECT_EQ(!directory, error->isNull("file"));
    const std::string advice = error->getValue<std::string>("advice");
    EXPECT_EQ("qrconfig: " + error->getValue<std::string>("message") + "." +
                  (advice.empty() ? "" : " " + advice) + "\n",
              run.Err);
  }
}

TEST(CommandsTest, AFailedWriteIsReportedWithStatusOne) {
  std::ostringstream out;
  out.setstate(std::ios::badbit);
  std::ostringstream err;
  EXPECT_EQ(1, qrconfig::RunTool({"drivers", "--config-dir", SampleDir()}, out, err));
  EXPECT_EQ(0u, err.str().find("qrconfig: cannot write the output")) << err.str();
}

TEST(CommandsTest, JsonOutputsCarryTheSameDataAsTheText) {
  const std::tuple<std::vector<std::string>, std::string, std::string> cases[] = {
      {{"tree"}, "path", "\\Quorin"},
      {{"tree"}, "children[0].name", "DBDrivers"},
      {{"get", "/Quorin/DBDrivers/Corvane/crv21", "Port"}, "value", "1522"},
      {{"get", "/Quorin/Traces"}, "fields[1].value", "qr.logger.file"},
      {{"drivers"}, "drivers[0].aliases[1]", "corvane"},
      {{"drivers"}, "drivers[3].loaded", "false"},
      {{"databases", "CRV"}, "databases[1].libraries[1]", "libcrvsec21.so"},
      {{"texts", "CRV", "fr"}, "External Name", "Base de données Corvane"},
      {{"locale", "en"}, "charset", "UTF-8"},
      {{"charset", "UTF-8"}, "value", "UTF-8"},
      {{"check"}, "summary.notes", "6"},
      {{"list"}, "[0].field", "Config Directory"},
      {{"explain", "/Quorin/DBDrivers", "Connection Timeout"}, "fields[0].origin[1].line", "35"},
      {{"explain", "/Quorin/DBDrivers/Corvane/crv19", "Library"},
       "fields[0].origin[0].source",
       "Defaults"},
  };
  for (const auto& [arguments, path, value] : cases) {
    SCOPED_TRACE(::testing::PrintToString(arguments) + " " + path);
    std::vector<std::string> line = arguments;
    line.push_back("--json");
    const ToolRun run = RunQrConfig(line);
    EXPECT_EQ(0, run.Status);
    EXPECT_EQ(value, JsonAt(run.Out, path));
  }
}

}  // namespace
