#include "app/tool.h"

#include <memory>

#include "app/config_directory.h"
#include "app/failure_report.h"
#include "app/tool_environment.h"
#include "cli/command_catalog.h"
#include "cli/command_line.h"
#include "cli/help_text.h"
#include "commands/check_command.h"
#include "commands/driver_commands.h"
#include "commands/locale_commands.h"
#include "commands/lookup.h"
#include "commands/names_command.h"
#include "commands/origin_commands.h"
#include "commands/tree_commands.h"
#include "qr_config/config/manager/config_startup.h"
#include "qr_config/config/version.h"

namespace qrconfig {

namespace {

using QueryCommand = int (*)(const Invocation&, ConfigManager&, std::ostream&);

QueryCommand QueryCommandNamed(const std::string& name) {
  static const std::pair<const char*, QueryCommand> kCommands[] = {
      {"tree", &RunTree},           {"get", &RunGet},         {"drivers", &RunDrivers},
      {"databases", &RunDatabases}, {"resolve", &RunResolve}, {"locale", &RunLocale},
      {"texts", &RunTexts},         {"charset", &RunCharset}, {"names", &RunNames},
  };
  for (const auto& [commandName, command] : kCommands) {
    if (name == commandName) return command;
  }
  return nullptr;
}

// A failure that ends the run; RunTool writes it.
struct Stop {
  Failure Reason;
};

// Loads the configuration (reporting to `observer` when not null) and runs `command` on it.
template <typename Command>
int RunLoaded(const Invocation& invocation, const ConfigDirectoryChoice& directory,
              LoadObserver* observer, Command&& command) {
  std::unique_ptr<ConfigSession> session;
  const std::string context =
      "the configuration in " + directory.Path + " (from " + directory.Source + ") does not load: ";
  try {
    session = observer != nullptr ? std::make_unique<ConfigSession>(invocation.Mode, *observer)
                                  : std::make_unique<ConfigSession>(invocation.Mode);
  } catch (const QRError& error) {
    throw Stop{Failure::Of(error, "load", context)};
  } catch (const std::bad_alloc&) {
    throw;
  } catch (const std::exception& error) {
    throw Stop{Failure::Of(error, "load", context)};
  }
  try {
    return command(ConfigManager::Instance());
  } catch (const LookupError& error) {
    throw Stop{Failure::Of(error.Error(), "lookup", "", error.Suggestion())};
  } catch (const QRError& error) {
    throw Stop{Failure::Of(error, "lookup", "")};
  }
}

// The commands that need the loaded configuration.
int RunQuery(const Invocation& invocation, const ConfigDirectoryChoice& directory,
             std::ostream& out) {
  if (invocation.Command == "list" || invocation.Command == "explain") {
    EffectiveFields fields(invocation.Command == "explain"
                               ? ReportedPath(invocation.Arguments.front())
                               : std::string());
    return RunLoaded(invocation, directory, &fields, [&](ConfigManager& config) {
      return invocation.Command == "list" ? RunList(invocation, fields, out)
                                          : RunExplain(invocation, config, fields, out);
    });
  }
  return RunLoaded(invocation, directory, nullptr, [&](ConfigManager& config) {
    return QueryCommandNamed(invocation.Command)(invocation, config, out);
  });
}

// diff DIR1 DIR2: each directory loaded in turn, as --config-dir would name it. A directory
// that holds no configuration or does not load ends the run with status 2, as for diff.
int RunDiffCommand(const Invocation& invocation, std::ostream& out) {
  std::vector<ComparableLine> sides[2];
  for (int side = 0; side < 2; ++side) {
    Invocation one = invocation;
    one.ConfigDirectory = invocation.Arguments[side];
    const ConfigDirectoryChoice directory{one.ConfigDirectory, "the diff command line"};
    const std::string problem = ConfigDirectoryLocator::Problem(directory);
    Failure failure;
    if (!problem.empty()) {
      failure.Kind = "directory";
      failure.Message = problem;
      failure.File = directory.Path;
      failure.Status = kExitUsage;
      throw Stop{failure};
    }
    ToolEnvironment environment(one, directory.Path);
    EffectiveFields fields;
    try {
      RunLoaded(one, directory, &fields, [&](ConfigManager&) {
        sides[side] = ComparableLines(fields.Fields(), directory.Path);
        return 0;
      });
    } catch (Stop& stop) {
      stop.Reason.Status = kExitUsage;
      throw;
    }
  }
  return WriteDiff(invocation, sides[0], sides[1], out);
}

int Run(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err) {
  const Invocation invocation = ParseCommandLine(arguments);
  if (invocation.Help) {
    if (invocation.Command.empty()) {
      WriteProgramHelp(out);
    } else {
      WriteCommandHelp(*FindCommand(invocation.Command), out);
    }
    return kExitSuccess;
  }
  if (invocation.Version) {
    out << "qrconfig " << qr_config::Version() << '\n';
    return kExitSuccess;
  }
  if (invocation.Command == "diff") return RunDiffCommand(invocation, out);
  if (invocation.Command == "names") {
    CheckNamesArguments(invocation);
    if (NamesNeedNoConfiguration(invocation)) return RunStaticNames(invocation, out);
  }
  const ConfigDirectoryChoice directory = ConfigDirectoryLocator::Locate(invocation);
  const std::string problem = ConfigDirectoryLocator::Problem(directory);
  if (!problem.empty()) {
    Failure failure;
    failure.Kind = "directory";
    failure.Message = problem;
    failure.File = directory.Path;
    throw Stop{failure};
  }

  if (!invocation.ActiveSources.empty() && invocation.Mode == Initialization::Library) {
    err << "qrconfig: note: --active has no effect in library mode, where the main file's "
           "ActiveDataSources section applies; add --mode server.\n";
  }
  ToolEnvironment environment(invocation, directory.Path);
  if (invocation.Command == "check") return RunCheck(invocation, directory.Path, out);
  return RunQuery(invocation, directory, out);
}

}  // namespace

int RunTool(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err) {
  const bool asJson = AsksForJson(arguments);
  int status = kExitFailure;
  try {
    status = Run(arguments, out, err);
  } catch (const Stop& stop) {
    WriteFailure(stop.Reason, asJson, out, err);
    status = stop.Reason.Status;
  } catch (const UsageError& error) {
    WriteFailure(Failure::Usage(error.what()), asJson, out, err);
    status = kExitUsage;
  } catch (const QRError& error) {
    WriteFailure(Failure::Of(error, "internal", ""), asJson, out, err);
  } catch (const std::exception& error) {
    WriteFailure(Failure::Of(error, "internal", ""), asJson, out, err);
  }
  if (!out.flush()) {
    err << "qrconfig: cannot write the output (a full disk, a closed pipe or a read-only "
           "file?); what was written is incomplete.\n";
    return kExitFailure;
  }
  return status;
}

}  // namespace qrconfig
