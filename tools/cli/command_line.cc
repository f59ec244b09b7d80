#include "cli/command_line.h"

#include "app/suggestion.h"
#include "cli/command_catalog.h"

namespace qrconfig {

namespace {

std::string Quoted(const std::string& text) {
  return "\"" + text + "\"";
}

// Splits "NAME=VALUE" at its first '='; both parts must be non-empty except the value of
// --param, which may be empty.
std::pair<std::string, std::string> SplitAssignment(const OptionSpec& option,
                                                    const std::string& text, bool emptyValue) {
  const std::string::size_type equal = text.find('=');
  if (equal == std::string::npos || equal == 0 || (!emptyValue && equal + 1 == text.size())) {
    throw UsageError("option --" + std::string(option.Name) + " takes " + option.Argument +
                     ", not " + Quoted(text));
  }
  return {text.substr(0, equal), text.substr(equal + 1)};
}

std::string NonEmpty(const OptionSpec& option, const std::string& value, const char* what) {
  if (value.empty())
    throw UsageError("option --" + std::string(option.Name) + " needs " + what +
                     ", not an empty text");
  return value;
}

void Apply(const OptionSpec& option, const std::string& value, Invocation& invocation) {
  const std::string name = option.Name;
  if (name == "help") {
    invocation.Help = true;
  } else if (name == "version") {
    invocation.Version = true;
  } else if (name == "json") {
    invocation.Json = true;
  } else if (name == "quiet") {
    invocation.Quiet = true;
  } else if (name == "show-origin") {
    invocation.ShowOrigin = true;
  } else if (name == "config-dir") {
    invocation.ConfigDirectory = NonEmpty(option, value, "a directory");
  } else if (name == "platform") {
    invocation.Platform = NonEmpty(option, value, "a platform name");
  } else if (name == "param") {
    invocation.Parameters.push_back(SplitAssignment(option, value, true));
  } else if (name == "active") {
    invocation.ActiveSources.push_back(SplitAssignment(option, value, false));
  } else if (name == "mode" && (value == "server" || value == "library")) {
    invocation.Mode = value == "server" ? Initialization::Server : Initialization::Library;
  } else if (name == "severity" && (value == "error" || value == "warning" || value == "note")) {
    invocation.Threshold = value == "error"     ? Severity::Error
                           : value == "warning" ? Severity::Warning
                                                : Severity::Note;
  } else {
    throw UsageError("option --" + name + " takes " + option.Argument + ", not " + Quoted(value));
  }
}

// The option an argument starting with '-' names, or a UsageError saying why there is none.
const OptionSpec& OptionNamed(const std::string& argument, const std::string& name) {
  if (argument.compare(0, 2, "--") != 0) {
    for (const OptionSpec& option : Options()) {
      if (option.Short != nullptr && argument == option.Short) return option;
    }
    throw UsageError("unknown option " + argument);
  }
  if (const OptionSpec* option = FindOption(name)) return *option;
  std::vector<std::string> names;
  std::string completion;
  for (const OptionSpec& option : Options()) {
    names.emplace_back(option.Name);
    if (!name.empty() && names.back().compare(0, name.size(), name) == 0)
      completion = completion.empty() ? names.back() : "-";
  }
  if (!completion.empty() && completion != "-") {
    throw UsageError("unknown option --" + name + " (did you mean --" + completion +
                     "? option names are written in full)");
  }
  const std::string suggestion = Suggestion(name, names);
  throw UsageError("unknown option --" + name +
                   (suggestion.empty() ? "" : " (did you mean --" + suggestion + "?)"));
}

void CheckCommand(Invocation& invocation, const std::vector<const OptionSpec*>& given) {
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
  if (command == nullptr) {
    std::vector<std::string> names;
    for (const CommandSpec& known : Commands()) names.emplace_back(known.Name);
    std::string suggestion = Suggestion(invocation.Command, names);
    // Short commands are mistyped too: "tre", "gte".
    for (const std::string& name : names) {
      if (suggestion.empty() && invocation.Command.size() >= 2 &&
          name.compare(0, invocation.Command.size(), invocation.Command) == 0)
        suggestion = name;
    }
    throw UsageError("unknown command " + Quoted(invocation.Command) +
                     (suggestion.empty() ? "" : " (did you mean " + Quoted(suggestion) + "?)"));
  }
  if (invocation.Help || invocation.Version) return;
  for (const OptionSpec* option : given) {
    if (option->OnlyFor != nullptr && invocation.Command != option->OnlyFor)
      throw UsageError("option --" + std::string(option->Name) + " applies to " + option->OnlyFor +
                       " only");
  }
  const std::size_t count = invocation.Arguments.size();
  if (count >= 32 || !(command->AllowedCounts & (1u << count))) {
    throw UsageError(std::string(command->Name) + " takes " +
                     DescribeCounts(command->AllowedCounts) + " (" + command->Name + " " +
                     command->Synopsis + "), not " + std::to_string(count));
  }
}

}  // namespace

Invocation ParseCommandLine(const std::vector<std::string>& arguments) {
  Invocation invocation;
  std::vector<const OptionSpec*> given;
  bool optionsEnded = false;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string& argument = arguments[i];
    if (optionsEnded || argument.size() < 2 || argument[0] != '-') {
      if (invocation.Command.empty()) {
        invocation.Command = argument;
      } else {
        invocation.Arguments.push_back(argument);
      }
      continue;
    }
    if (argument == "--") {
      optionsEnded = true;
      continue;
    }
    const std::string::size_type equal = argument.find('=');
    const bool inline_value = argument.compare(0, 2, "--") == 0 && equal != std::string::npos;
    const std::string name = argument.substr(2, inline_value ? equal - 2 : std::string::npos);
    const OptionSpec& option = OptionNamed(argument, name);
    const std::string full = "--" + std::string(option.Name);
    for (const OptionSpec* earlier : given) {
      if (earlier == &option && !option.Repeatable)
        throw UsageError("option " + full + " is given twice (only --param and --active repeat)");
    }
    given.push_back(&option);
    std::string value;
    if (option.Argument == nullptr) {
      if (inline_value) throw UsageError("option " + full + " takes no value");
    } else if (inline_value) {
      value = argument.substr(equal + 1);
    } else if (i + 1 < arguments.size()) {
      value = arguments[++i];
    } else {
      throw UsageError("option " + full + " needs a value (" + full + " " + option.Argument + ")");
    }
    Apply(option, value, invocation);
  }
  CheckCommand(invocation, given);
  return invocation;
}

bool AsksForJson(const std::vector<std::string>& arguments) {
  for (const std::string& argument : arguments) {
    if (argument == "--") return false;
    if (argument == "--json") return true;
  }
  return false;
}

}  // namespace qrconfig
