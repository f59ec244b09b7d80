// The command line: what is accepted, how it is read, and what is refused with status 2.
#include <gtest/gtest.h>

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
}

struct BadLine {
  std::vector<std::string> Arguments;
  std::string Message;  // a part of the UsageError's text
};

TEST(CommandLineTest, RefusesMalformedLinesWithASentence) {
  const BadLine cases[] = {
      {{}, "no command given"},
      {{"bogus"}, "unknown command \"bogus\""},
      {{"help", "bogus"}, "unknown command \"bogus\""},
      {{"tree", "--bogus"}, "unknown option --bogus"},
      {{"tree", "--conf", "x"}, "unknown option --conf"},
      {{"tree", "-x"}, "Unknown option"},
      {{"tree", "--config-dir"}, "config-dir requires DIR"},
      {{"tree", "--json", "--json"}, "more than once: json"},
      {{"tree", "--json=1"}, "Unexpected option argument"},
      {{"tree", "--mode", "both"}, "--mode takes server or library, not \"both\""},
      {{"tree", "--param", "novalue"}, "--param takes NAME=VALUE, not \"novalue\""},
      {{"tree", "--param", "=v"}, "--param takes NAME=VALUE"},
      {{"tree", "--active", "Corvane="}, "--active takes DRIVER=PATTERN"},
      {{"tree", "--config-dir", ""}, "--config-dir needs a directory"},
      {{"tree", "--platform", ""}, "--platform needs a platform name"},
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
      {"tree", "--mode", "both"},
      {"tree", "--config-dir", "/a", "--param", "Config Directory=/b"},
  };
  for (const auto& line : lines) {
    SCOPED_TRACE(::testing::PrintToString(line));
    const ToolRun run = RunQrConfig(line);
    EXPECT_EQ(2, run.Status);
    EXPECT_EQ("", run.Out);
    EXPECT_EQ(0u, run.Err.find("qrconfig: ")) << run.Err;
    EXPECT_NE(std::string::npos, run.Err.find("Run 'qrconfig --help' for usage.")) << run.Err;
  }
}

TEST(CommandLineTest, HelpOfTheProgramAndOfEachCommand) {
  const ToolRun program = RunQrConfig({"--help"});
  EXPECT_EQ(0, program.Status);
  for (const char* command :
       {"tree", "get", "drivers", "databases", "resolve", "locale", "texts", "charset", "check"}) {
    SCOPED_TRACE(command);
    EXPECT_NE(std::string::npos, program.Out.find(std::string("\n  ") + command + " "));
    const ToolRun help = RunQrConfig({command, "--help"});
    EXPECT_EQ(0, help.Status);
    EXPECT_EQ(0u, help.Out.find(std::string("qrconfig ") + command)) << help.Out;
    EXPECT_NE(std::string::npos, help.Out.find("--config-dir=DIR"));  // the options follow
  }
  EXPECT_EQ(RunQrConfig({"texts", "--help"}).Out, RunQrConfig({"help", "texts"}).Out);
}

}  // namespace
}  // namespace qrconfig
