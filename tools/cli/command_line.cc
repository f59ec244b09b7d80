// Parsing relies on POCO's OptionProcessor (Unix style) for option syntax, repetition and
// missing values; the subcommand is the first positional argument. On top of POCO the parser
// refuses abbreviated option names, which POCO would otherwise complete: a script that works
// today must not become ambiguous when an option is added.
#include "cli/command_line.h"

#include <Poco/Util/Option.h>
#include <Poco/Util/OptionException.h>
#include <Poco/Util/OptionProcessor.h>

#include "cli/command_catalog.h"

namespace qrconfig {

namespace {

using Poco::Util::Option;

// Splits "NAME=VALUE" at its first '='; both parts must be non-empty except the value of
// --param, which may be empty.
std::pair<std::string, std::string> SplitAssignment(const std::string& option,
                                                    const std::string& text, bool emptyValue) {
  const std::string::size_type equal = text.find('=');
  if (equal == std::string::npos || equal == 0 || (!emptyValue && equal + 1 == text.size())) {
    throw UsageError("--" + option + " takes " +
                     (option == "param" ? "NAME=VALUE" : "DRIVER=PATTERN") + ", not \"" + text +
                     "\"");
  }
  return {text.substr(0, equal), text.substr(equal + 1)};
}

void Apply(const std::string& name, const std::string& value, Invocation& invocation) {
  if (name == "help") {
    invocation.Help = true;
  } else if (name == "version") {
    invocation.Version = true;
  } else if (name == "json") {
    invocation.Json = true;
  } else if (name == "config-dir") {
    if (value.empty()) throw UsageError("--config-dir needs a directory, not an empty text");
    invocation.ConfigDirectory = value;
  } else if (name == "mode") {
    if (value == "server") {
      invocation.Mode = Initialization::Server;
    } else if (value == "library") {
      invocation.Mode = Initialization::Library;
    } else {
      throw UsageError("--mode takes server or library, not \"" + value + "\"");
    }
  } else if (name == "param") {
    invocation.Parameters.push_back(SplitAssignment(name, value, true));
  } else if (name == "active") {
    invocation.ActiveSources.push_back(SplitAssignment(name, value, false));
  } else if (name == "platform") {
    if (value.empty()) throw UsageError("--platform needs a platform name, not an empty text");
    invocation.Platform = value;
  }
}

// Refuses "--conf" for "--config-dir": POCO accepts any unambiguous prefix.
void RequireFullName(const std::string& argument, const Poco::Util::OptionSet& options) {
  if (argument.size() <= 2 || argument.compare(0, 2, "--") != 0) return;
  const std::string name = argument.substr(2, argument.find_first_of("=:") - 2);
  for (const Option& option : options) {
    if (option.fullName() == name) return;
  }
  throw UsageError("unknown option --" + name);
}

void CheckCommand(Invocation& invocation) {
  if (invocation.Command == "help") {
    invocation.Help = true;
    invocation.Command = invocation.Arguments.empty() ? "" : invocation.Arguments.front();
    if (invocation.Arguments.size() > 1) throw UsageError("help takes at most one command");
    invocation.Arguments.clear();
  }
  if (invocation.Command.empty()) {
    if (invocation.Help || invocation.Version) return;
    throw UsageError("no command given");
  }
  const CommandSpec* command = FindCommand(invocation.Command);
  if (command == nullptr) throw UsageError("unknown command \"" + invocation.Command + "\"");
  if (invocation.Help || invocation.Version) return;
  const std::size_t count = invocation.Arguments.size();
  if (count >= 32 || !(command->AllowedCounts & (1u << count))) {
    throw UsageError(std::string(command->Name) + " takes " +
                     DescribeCounts(command->AllowedCounts) + " (" + command->Name + " " +
                     command->Synopsis + "), not " + std::to_string(count));
  }
}

}  // namespace

Poco::Util::OptionSet ToolOptions() {
  Poco::Util::OptionSet options;
  options.addOption(Option("help", "h", "Show the help of the program or of the command."));
  options.addOption(Option("version", "", "Show the version of the library and exit."));
  options.addOption(Option("config-dir", "",
                           "The configuration directory. Default: QR_CONFIG_DIR, else the "
                           "sample installation that comes with qrconfig.")
                        .argument("DIR"));
  options.addOption(Option("mode", "",
                           "Initialise in server or library mode (default library): selects "
                           "the main file's Server or Library section and the mode's rules.")
                        .argument("MODE"));
  options.addOption(Option("param", "",
                           "Set the registry parameter NAME to VALUE before loading; "
                           "repeatable. \"Config Directory\" is --config-dir.")
                        .argument("NAME=VALUE")
                        .repeatable(true));
  options.addOption(Option("active", "",
                           "Register an active data source: databases of DRIVER whose whole "
                           "name matches the regular expression PATTERN; repeatable. Takes "
                           "effect in server mode only.")
                        .argument("DRIVER=PATTERN")
                        .repeatable(true));
  options.addOption(Option("platform", "",
                           "Load as if running on the platform NAME (with its families, see "
                           "docs/qrconfig.md) instead of this machine's platform.")
                        .argument("NAME"));
  options.addOption(Option("json", "", "Print the result as JSON instead of text."));
  return options;
}

Invocation ParseCommandLine(const std::vector<std::string>& arguments) {
  const Poco::Util::OptionSet options = ToolOptions();
  Poco::Util::OptionProcessor processor(options);
  processor.setUnixStyle(true);

  Invocation invocation;
  bool valuePending = false;  // the argument before was an option waiting for its value
  bool optionsEnded = false;
  try {
    for (const std::string& argument : arguments) {
      std::string name;
      std::string value;
      if (valuePending) {
        processor.process(argument, name, value);
        valuePending = false;
        Apply(name, value, invocation);
        continue;
      }
      if (!optionsEnded && argument == "--") {
        optionsEnded = true;
        continue;
      }
      if (!optionsEnded && argument.size() > 1 && argument[0] == '-') {
        RequireFullName(argument, options);
        processor.process(argument, name, value);
        valuePending = name.empty();
        if (!valuePending) Apply(name, value, invocation);
        continue;
      }
      if (invocation.Command.empty()) {
        invocation.Command = argument;
      } else {
        invocation.Arguments.push_back(argument);
      }
    }
    processor.checkRequired();
  } catch (const Poco::Util::OptionException& error) {
    throw UsageError(error.displayText());
  }
  CheckCommand(invocation);
  return invocation;
}

}  // namespace qrconfig
