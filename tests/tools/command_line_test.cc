// The command line: what is accepted, how it is read, and what is refused with status 2.
#include <gtest/gtest.h>

#include <cstdlib>
#include <sstream>

#include "app/tool.h"
#include "cli/command_line.h"
#include "tool_runner.h"

namespace qrconfig {
namespace {

using Pairs = std::vector<std::pair<std::string, std::string>>;

struct GoodLine {
  std::vector<std::string> Arguments;
  std::string Command;
  std::vector<std::string> Positional;
  bool Help;
  bool Json;
};

TEST(CommandLineTest, ReadsCommandArgumentsAndFlagsAnywhere) {
  const GoodLine cases[] = {
      {{"tree"}, "tree", {}, false, false},
      {{"--json", "get", "/Quorin", "Port"}, "get", {"/Quorin", "Port"}, false, true},
      {{"get", "/Quorin", "--json"}, "get", {"/Quorin"}, false, true},
      {{"charset", "--", "--json"}, "charset", {"--json"}, false, false},
      {{"-h"}, "", {}, true, false},
      {{"tree", "--help"}, "tree", {}, true, false},
      {{"help", "check"}, "check", {}, true, false},
      {{"help"}, "", {}, true, false},
  };
  for (const GoodLine& line : cases) {
    SCOPED_TRACE(::testing::PrintToString(line.Arguments));
    const Invocation invocation = ParseCommandLine(line.Arguments);
    EXPECT_EQ(line.Command, invocation.Command);
    EXPECT_EQ(line.Positional, invocation.Arguments);
    EXPECT_EQ(line.Help, invocation.Help);
    EXPECT_EQ(line.Json, invocation.Json);
  }
}

TEST(CommandLineTest, ReadsOptionValuesInBothForms) {
  const Invocation invocation = ParseCommandLine(
      {"--mode", "server", "drivers", "--param", "A=B", "--param=C=", "--active", "Corvane=crv.*",
       "--platform=AIX", "--config-dir", "/etc/quorin", "--param", "A=x=y"});
  EXPECT_EQ(Initialization::Server, invocation.Mode);
  EXPECT_EQ((Pairs{{"A", "B"}, {"C", ""}, {"A", "x=y"}}), invocation.Parameters);
  EXPECT_EQ((Pairs{{"Corvane", "crv.*"}}), invocation.ActiveSources);
  EXPECT_EQ("AIX", invocation.Platform);
  EXPECT_EQ("/etc/quorin", invocation.ConfigDirectory);
  EXPECT_EQ(Initialization::Library, ParseCommandLine({"drivers"}).Mode);
  EXPECT_TRUE(ParseCommandLine({"--version"}).Version);
  const Invocation check = ParseCommandLine({"check", "--quiet", "--severity=error"});
  EXPECT_TRUE(check.Quiet);
  EXPECT_EQ(Severity::Error, check.Threshold);
}

struct BadLine {
  std::vector<std::string> Arguments;
  std::string Message;  // a part of the UsageError's text
};

TEST(CommandLineTest, RefusesMalformedLinesWithASentence) {
  const BadLine cases[] = {
      {{}, "no command given"},
      {{"tre"}, "unknown command \"tre\" (did you mean \"tree\"?)"},
      {{"chekc"}, "unknown command \"chekc\" (did you mean \"check\"?)"},
      {{"help", "bogus"}, "unknown command \"bogus\""},
      {{"tree", "--bogus"}, "unknown option --bogus"},
      {{"tree", "--conf", "x"},
       "unknown option --conf (did you mean --config-dir? option names are written in full)"},
      {{"tree", "--plaform", "x"}, "unknown option --plaform (did you mean --platform?)"},
      {{"tree", "-x"}, "unknown option -x"},
      {{"tree", "--config-dir"}, "option --config-dir needs a value (--config-dir DIR)"},
      {{"tree", "--json", "--json"}, "option --json is given twice"},
      {{"tree", "--mode=server", "--mode", "server"}, "option --mode is given twice"},
      {{"tree", "--json=1"}, "option --json takes no value"},
      {{"tree", "--mode", "both"}, "option --mode takes server|library, not \"both\""},
      {{"tree", "--param", "novalue"}, "option --param takes NAME=VALUE, not \"novalue\""},
      {{"tree", "--active", "Corvane="}, "option --active takes DRIVER=PATTERN"},
      {{"tree", "--config-dir", ""}, "option --config-dir needs a directory"},
      {{"tree", "--quiet"}, "option --quiet applies to check only"},
      {{"check", "--severity", "fatal"},
       "option --severity takes error|warning|note, not \"fatal\""},
      {{"tree", "a", "b"}, "tree takes 0 or 1 argument (tree [NODEPATH]), not 2"},
      {{"drivers", "x"}, "drivers takes no argument"},
      {{"charset", "a", "b"}, "charset takes 1 or 3 arguments"},
  };
  for (const BadLine& line : cases) {
    SCOPED_TRACE(::testing::PrintToString(line.Arguments));
    try {
      ParseCommandLine(line.Arguments);
      ADD_FAILURE() << "accepted";
    } catch (const UsageError& error) {
      EXPECT_NE(std::string::npos, std::string(error.what()).find(line.Message)) << error.what();
    }
  }
}

TEST(CommandLineTest, UsageErrorsExitWithStatusTwoAndPointAtTheHelp) {
  const std::vector<std::vector<std::string>> lines = {
      {"bogus"},
      {"tree", "--config-dir", "/a", "--param", "Config Directory=/b"},
      {"names", "nods"},
      {"names", "fields"},
  };
  for (const auto& line : lines) {
    SCOPED_TRACE(::testing::PrintToString(line));
    const ToolRun run = RunQrConfig(line);
    EXPECT_EQ(2, run.Status);
    EXPECT_EQ("", run.Out);
    EXPECT_EQ(0u, run.Err.find("qrconfig: ")) << run.Err;
    EXPECT_NE(std::string::npos, run.Err.find(".\nRun 'qrconfig --help' for usage.\n")) << run.Err;
    std::vector<std::string> json = line;
    json.push_back("--json");
    const ToolRun jsonRun = RunQrConfig(json);
    EXPECT_EQ(2, jsonRun.Status);
    EXPECT_EQ("", jsonRun.Err);
    EXPECT_NE(std::string::npos, jsonRun.Out.find("\"kind\": \"usage\"")) << jsonRun.Out;
  }
  // Without --config-dir and QR_CONFIG_DIR there is no installation to read: no default.
  const char* environment = std::getenv("QR_CONFIG_DIR");
  const std::string saved = environment != nullptr ? environment : "";
  unsetenv("QR_CONFIG_DIR");
  std::ostringstream out;
  std::ostringstream err;
  EXPECT_EQ(2, RunTool({"check"}, out, err));
  EXPECT_EQ("", out.str());
  EXPECT_EQ(0u, err.str().find("qrconfig: no configuration directory given: name one with "
                               "--config-dir DIR or the environment variable QR_CONFIG_DIR.\n"))
      << err.str();
  // The environment names the directory when the command line does not.
  setenv("QR_CONFIG_DIR", "/nonexistent/env/", 1);
  EXPECT_EQ(1, RunTool({"tree"}, out, err));
  EXPECT_NE(std::string::npos,
            err.str().find("directory /nonexistent/env (from QR_CONFIG_DIR) does not exist"));
  if (environment != nullptr) {
    setenv("QR_CONFIG_DIR", saved.c_str(), 1);
  } else {
    unsetenv("QR_CONFIG_DIR");
  }
}

TEST(CommandLineTest, HelpOfTheProgramAndOfEachCommandFitsEightyColumns) {
  const ToolRun program = RunQrConfig({"--help"});
  EXPECT_EQ(0, program.Status);
  EXPECT_NE(std::string::npos, program.Out.find("\nExamples:\n"));
  EXPECT_NE(std::string::npos, program.Out.find("man qrconfig"));
  std::vector<std::pair<std::string, std::string>> helps = {{"qrconfig", program.Out}};
  for (const char* command : {"tree", "get", "drivers", "databases", "resolve", "locale", "texts",
                              "charset", "check", "names", "list", "explain", "diff"}) {
    SCOPED_TRACE(command);
    EXPECT_NE(std::string::npos, program.Out.find(std::string("\n  ") + command + " "));
    const ToolRun help = RunQrConfig({command, "--help"});
    EXPECT_EQ(0, help.Status);
    EXPECT_EQ(0u, help.Out.find(std::string("Usage: qrconfig ") + command)) << help.Out;
    EXPECT_NE(std::string::npos, help.Out.find("\n  --config-dir DIR "));  // the options follow
    helps.emplace_back(command, help.Out);
  }
  for (const auto& [name, text] : helps) {
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
      SCOPED_TRACE(name + ": " + line);
      std::size_t columns = 0;  // UTF-8 characters
      for (char c : line) columns += (static_cast<unsigned char>(c) & 0xC0) != 0x80;
      EXPECT_LE(columns, 80u);
      EXPECT_TRUE(line.empty() || line.back() != ' ');
    }
  }
  EXPECT_EQ(RunQrConfig({"texts", "--help"}).Out, RunQrConfig({"help", "texts"}).Out);
  EXPECT_EQ(std::string::npos, RunQrConfig({"tree", "--help"}).Out.find("--severity"));
}

}  // namespace
}  // namespace qrconfig
