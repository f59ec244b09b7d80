// The subcommands of qrconfig: names, arguments and help texts, in one table.
#pragma once

#include <string>
#include <vector>

namespace qrconfig {

struct CommandSpec {
  const char* Name;
  const char* Synopsis;     // the arguments, e.g. "NODEPATH [FIELD]"
  unsigned AllowedCounts;   // bit n set: n positional arguments are accepted
  const char* Summary;      // one line for the program's help
  const char* Description;  // the command's own help: lines that start with a letter are
                            // wrapped anew, indented lines stay as they are
};

// One option of the command line.
struct OptionSpec {
  const char* Name;      // the full name without "--"
  const char* Short;     // "-h", or nullptr
  const char* Argument;  // the value's placeholder ("DIR"), or its choices ("server|library");
                         // nullptr for an option without value
  bool Repeatable;       // may be given more than once
  const char* OnlyFor;   // the one command that accepts it, or nullptr for every command
  const char* Help;      // one sentence or two, unwrapped
};

// Every subcommand, in the order the program's help lists them.
const std::vector<CommandSpec>& Commands();

// The subcommand named exactly `name`, or nullptr.
const CommandSpec* FindCommand(const std::string& name);

// Every option, in the order the help lists them.
const std::vector<OptionSpec>& Options();

// The option named exactly `name` (without "--"), or nullptr.
const OptionSpec* FindOption(const std::string& name);

// "no argument", "1 argument", "1 or 3 arguments", ... for usage errors.
std::string DescribeCounts(unsigned allowedCounts);

}  // namespace qrconfig
