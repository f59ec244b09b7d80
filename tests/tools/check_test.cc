// `check` on the shipped installations: every planted problem of examples/broken-config is
// found with its severity, kind, file and line, and the sample passes with notes only.
#include <gtest/gtest.h>

#include <Poco/File.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <sstream>

#include "check/findings_report.h"
#include "support/temp_installation.h"
#include "tool_runner.h"

namespace {

struct Expected {
  const char* Severity;
  const char* Kind;
  const char* File;  // "" when the finding names no file
  int Line;          // 0 when the finding has no line
  const char* Text;  // a part of the message
};

// The broken installation's planted problems (examples/broken-config/README.md lists them), in
// the order of the report: by file (findings without one last), errors before warnings before
// notes within a file, then by line.
const Expected kBroken[] = {
    {"warning", "name-collision", "driver.cfg", 19, "alias \"CRV\" of \"Relay Bridge\""},
    {"warning", "unknown-driver", "driverde_DE.cfg", 7, "Did you mean \"Filetta\"?"},
    {"warning", "unknown-value", "driverfr.cfg", 9, "message id \"Coment\""},
    {"warning", "value-layout", "drivers/corvane/corvane.dsf", 19, "\"Main production database\""},
    {"warning", "unknown-attribute", "drivers/corvane/corvane.dsf", 24,
     "Did you mean \"Platform\"?"},
    {"warning", "name-collision", "drivers/corvane/corvane.dsf", 26,
     "alias \"CRV19\" of the database \"crv21\""},
    {"warning", "charset-table", "drivers/corvane/corvane.dsf", 27, "corvane21.csl"},
    {"warning", "database-skipped", "drivers/corvane/corvane.dsf", 42, "has no \"Active\""},
    {"note", "database-skipped", "drivers/corvane/corvane.dsf", 37,
     "\"crv19win\" of \"Corvane\" is for the platforms \"Windows\""},
    {"note", "database-skipped", "drivers/corvane/corvane.dsf", 47, "\"crv_archive\""},
    {"note", "database-skipped", "drivers/corvane/corvane.dsf", 52, "\"crv11\""},
    {"error", "xml-error", "drivers/pelmora/pelmora.dsf", 11,
     "not well-formed XML (mismatched tag)"},
    {"error", "value-type", "qr.cfg", 34,
     "\"Ignore Driver Load Failure\" is written as \"1\" from qr.cfg:34 (Settings)"},
    {"error", "value-type", "qr.cfg", 35, "\"SQL External Extension\" is written as \"42\""},
    {"warning", "unknown-element", "qr.cfg", 38, "element <Parmeter>"},
    {"warning", "ignored-element", "qr.cfg", 52, "sets \"Retry Count\""},
    {"note", "setup-skipped", "setup/corvane.32.setup", 0, "left out"},
    {"warning", "unknown-driver", "setup/dorvik.setup", 3, "\"Dorvik\""},
    {"error", "missing-data-file", "setup/filetta.setup", 5, "filetta3.dsf"},
    {"note", "non-native-driver", "setup/relay.setup", 4, "another implementation"},
    {"error", "load-failure", "", 0, "QRError 10"},
};

TEST(CheckTest, FindsEveryPlantedProblemOfTheBrokenInstallationInReportOrder) {
  const ToolRun run = RunQrConfig({"check", "--json", "--config-dir", BrokenDir()});
  EXPECT_EQ(1, run.Status) << run.Err;
  const std::vector<Found> found = ParseFindings(run.Out);
  std::vector<std::string> expected;
  std::vector<std::string> reported;
  for (const Expected& e : kBroken)
    expected.push_back(std::string(e.Severity) + " " + e.Kind + " " + e.File + ":" +
                       std::to_string(e.Line));
  for (const Found& f : found)
    reported.push_back(f.Severity + " " + f.Kind + " " + f.File + ":" + std::to_string(f.Line));
  ASSERT_EQ(expected, reported);
  for (std::size_t i = 0; i < found.size(); ++i)
    EXPECT_NE(std::string::npos, found[i].Message.find(kBroken[i].Text)) << found[i].Message;
}

TEST(CheckTest, TextReportNamesFileLineSeverityAndKindAsUsableFromHere) {
  const ToolRun run = RunQrConfig({"check", "--config-dir", BrokenDir()});
  EXPECT_EQ(1, run.Status);
  const std::string dir = BrokenDir() + "/";
  for (const std::string& line :
       {"\n" + dir +
            "drivers/pelmora/pelmora.dsf:11:38: error: The data-access file is not well-formed "
            "XML (mismatched tag). The start-up fails (QRError 10), since \"Ignore Driver Load "
            "Failure\" is not Yes. [xml-error]\n    Fix the XML",
        "\n" + dir +
            "qr.cfg:38: warning: The reader of the main file does not know the element "
            "<Parmeter> and passes over it. Did you mean \"Parameter\"? [unknown-element]\n"
            "    Correct the element's name",
        "\n" + dir + "setup/corvane.32.setup: note: ",
        std::string("\ncheck: error: The library does not load"),
        std::string("\n5 errors, 11 warnings, 5 notes in ")}) {
    SCOPED_TRACE(line);
    EXPECT_NE(std::string::npos, ("\n" + run.Out).find(line)) << run.Out;
  }
  EXPECT_NE(std::string::npos, run.Out.find("The library does not load this installation.\n"));
  EXPECT_EQ("a\\x01b\\x0a\\x7f", qrconfig::FindingsReport::Escaped("a\x01"
                                                                   "b\n\x7f"));
}

TEST(CheckTest, QuietAndSeverityChooseWhatIsShownAndTheStatus) {
  TempInstallation install;
  install.WriteBase("", "", "  <Parmeter Name=\"x\">1</Parmeter>\n");
  struct Case {
    std::vector<std::string> Options;
    int Status;
    std::vector<std::string> Shown;  // a part of each line, in order
  };
  const Case cases[] = {
      {{},
       3,
       {"qr.cfg:", "    Correct",
        "0 errors, 1 warning, 0 notes in " + install.Dir() +
            " (library mode, platform TestOS). The library loads this installation."}},
      {{"--quiet"}, 3, {"qr.cfg:", "    Correct"}},
      {{"--severity", "warning"}, 3, {"qr.cfg:", "    Correct", "0 errors, 1 warning"}},
      {{"--severity", "error"}, 0, {"0 errors, 1 warning"}},
      {{"--severity", "error", "--quiet"}, 0, {}},
  };
  for (const Case& test : cases) {
    SCOPED_TRACE(::testing::PrintToString(test.Options));
    std::vector<std::string> arguments = {"check", "--platform", "TestOS", "--config-dir",
                                          install.Dir()};
    arguments.insert(arguments.end(), test.Options.begin(), test.Options.end());
    const ToolRun run = RunQrConfig(arguments);
    EXPECT_EQ(test.Status, run.Status) << run.Out;
    std::istringstream lines(run.Out);
    std::vector<std::string> shown;
    for (std::string line; std::getline(lines, line);) shown.push_back(line);
    ASSERT_EQ(test.Shown.size(), shown.size()) << run.Out;
    for (std::size_t i = 0; i < shown.size(); ++i)
      EXPECT_NE(std::string::npos, shown[i].find(test.Shown[i])) << shown[i];
  }
  const ToolRun sample = RunQrConfig({"check", "--quiet"});  // the sample has notes alone
  EXPECT_EQ(0, sample.Status);
  EXPECT_EQ("", sample.Out);
}

// Each case changes one thing in a copy of the sample: in `File`, the first `From` becomes
// `To` ("" deletes the file, "~" copies it to an editor backup; no file: no change), or checks
// with `Options`. check reports the finding at the file and line where the cause stands, with
// the library's own kind.
TEST(CheckTest, EachMistakeIsFoundWhereItStands) {
  struct Case {
    const char* File;
    std::string From, To;
    const char* Kind;
    const char* Place;      // file:line inside the copy
    const char* Text = "";  // a part of the finding's message
    std::vector<std::string> Options = {};
  };
  const std::vector<std::string> server = {"--mode", "server", "--active", "Filetta=none"};
  const Case cases[] = {
      {"drivers/corvane/corvane.dsf", "\"crv21\" Active=\"Yes\"", "\"crv21\" Active=\"no\"",
       "case-variant", "drivers/corvane/corvane.dsf:21"},
      {"drivers/filetta/filetta.dsf", "Name=\"filetta3\"", "", "missing-name",
       "drivers/filetta/filetta.dsf:11"},
      {"qr.cfg", "<NetworkLayer Name=\"Corvane\">", "<NetworkLayer Name=\"Corvan\">",
       "unknown-driver", "qr.cfg:38"},
      {"setup/pelmora.setup", "", "", "driver-without-setup", "driver.cfg:10"},
      {"setup/corvane.setup", "~", "", "duplicate-setup", "setup/corvane.setup~:4"},
      {"qr.cfg", "    <ActiveDataSources>",
       "    <Parameter Name=\"Pool Connections\">No</Parameter>\n    <ActiveDataSources>",
       "duplicate-setting", "qr.cfg:37"},
      {"qr.cfg", "plm1[0-9]", "plm1[0-9", "invalid-pattern", "qr.cfg:42"},
      {"qr.cfg", ">30<", ">99999999999<", "value-type", "qr.cfg:35"},  // beyond 32 bits
      {"qr.cfg", ">setup<", ">1<", "value-type", "qr.cfg:30"},
      {"drivers/corvane/corvane.dsf", "<Library>",
       "<Parameter Name=\"Library\">5</Parameter><Library>", "value-type",
       "drivers/corvane/corvane.dsf:12", "is a text, but the field it updates is an integer"},
      {"drivers/corvane/corvane.dsf", "</Library>", "\n  </Library>", "value-layout",
       "drivers/corvane/corvane.dsf:12"},
      {"setup/relay.setup", " Name=\"Relay Bridge\"", "", "setup-no-driver", "setup/relay.setup:0"},
      {"driveren.cfg", "", "", "missing-file", "driveren.cfg:0"},
      {"drivers/corvane/corvane.csl", "UTF-8 = DB_UTF8", "UTF-8 = DB_UTF8\nUTF-8 = DB_X",
       "name-collision", "drivers/corvane/corvane.csl:0"},
      // Values split over lines, and a lower-case implementation.
      {"qr.cfg", "Linux\">UTF-8</CharSet>", "Linux\">UTF-8\n  </CharSet>", "value-layout",
       "qr.cfg:23"},
      {"qr.cfg", ">60</Parameter>", ">60\n  </Parameter>", "value-layout", "qr.cfg:49"},
      {"driveren.cfg", ">Corvane Database</Message>", ">Corvane Database\n  </Message>",
       "value-layout", "driveren.cfg:7"},
      {"driver.cfg", "<Alias>LITE</Alias>", "<Alias>LITE\n  </Alias>", "value-layout",
       "driver.cfg:15"},
      {"driver.cfg", "\"Filetta\" Implementation=\"C\"", "\"Filetta\" Implementation=\"c\"",
       "case-variant", "driver.cfg:14"},
      // Server mode applies the registered active sources, not the main file's.
      {"", "", "", "database-skipped", "drivers/filetta/filetta.dsf:11", "", server},
      {"", "", "", "driver-skipped", "setup/pelmora.setup:3", "", server},
      {"qr.cfg", "Failure\">No<", "Failure\">1<", "value-type", "qr.cfg:32", "server mode", server},
  };
  for (const Case& test : cases) {
    SCOPED_TRACE(test.Place);
    TempInstallation copy;
    Poco::File(SampleDir()).copyTo(copy.Path("sample"));
    const std::string file = copy.Path("sample/") + test.File;
    if (*test.File == '\0') {  // checked as it is
    } else if (test.From.empty()) {
      copy.Remove("sample/" + std::string(test.File));
    } else if (test.From == "~") {
      Poco::File(file).copyTo(file + "~");
    } else {
      std::ifstream in(file);
      std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
      copy.Write("sample/" + std::string(test.File),
                 text.replace(text.find(test.From), test.From.size(), test.To));
    }
    std::vector<std::string> arguments = {"check", "--json", "--config-dir", copy.Path("sample")};
    arguments.insert(arguments.end(), test.Options.begin(), test.Options.end());
    const ToolRun run = RunQrConfig(arguments);
    std::vector<std::string> places;
    for (const Found& f : ParseFindings(run.Out)) {
      if (f.Kind == test.Kind && f.Message.find(test.Text) != std::string::npos)
        places.push_back(f.File + ":" + std::to_string(f.Line));
    }
    EXPECT_EQ(1, std::count(places.begin(), places.end(), test.Place))
        << test.Kind << " found at " << ::testing::PrintToString(places) << "\n"
        << run.Out;
  }
}

}  // namespace
