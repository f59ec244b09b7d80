#include "app/tool.h"

#include <memory>

#include <Poco/Exception.h>

#include "app/config_directory.h"
#include "app/error_advice.h"
#include "app/tool_environment.h"
#include "cli/command_catalog.h"
#include "cli/command_line.h"
#include "cli/help_text.h"
#include "commands/check_command.h"
#include "commands/driver_commands.h"
#include "commands/locale_commands.h"
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
      {"texts", &RunTexts},         {"charset", &RunCharset},
  };
  for (const auto& [commandName, command] : kCommands) {
    if (name == commandName) return command;
  }
  return nullptr;
}

// Loads the configuration and runs a query command on it.
int RunQuery(const Invocation& invocation, const ConfigDirectoryChoice& directory,
             std::ostream& out, std::ostream& err) {
  std::unique_ptr<ConfigSession> session;
  try {
    session = std::make_unique<ConfigSession>(invocation.Mode);
  } catch (const QRError& error) {
    err << "qrconfig: the configuration in " << directory.Path << " (from " << directory.Source
        << ") does not load: " << ErrorSentence(error) << '\n';
    return kExitFailure;
  }
  return QueryCommandNamed(invocation.Command)(invocation, ConfigManager::Instance(), out);
}

int Run(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err) {
  Invocation invocation;
  ConfigDirectoryChoice directory;
  try {
    invocation = ParseCommandLine(arguments);
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
    directory = ConfigDirectoryLocator::Locate(invocation);
  } catch (const UsageError& error) {
    err << "qrconfig: " << error.what() << ".\nRun 'qrconfig --help' for usage.\n";
    return kExitUsage;
  }

  if (!invocation.ActiveSources.empty() && invocation.Mode == Initialization::Library) {
    err << "qrconfig: note: --active has no effect in library mode, where the main file's "
           "ActiveDataSources section applies; add --mode server.\n";
  }
  ToolEnvironment environment(invocation, directory.Path);
  if (invocation.Command == "check") return RunCheck(invocation, directory.Path, out);
  return RunQuery(invocation, directory, out, err);
}

}  // namespace

int RunTool(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err) {
  try {
    return Run(arguments, out, err);
  } catch (const QRError& error) {
    err << "qrconfig: " << ErrorSentence(error) << '\n';
  } catch (const std::exception& error) {
    err << "qrconfig: " << ErrorSentence(error) << '\n';
  }
  return kExitFailure;
}

}  // namespace qrconfig
