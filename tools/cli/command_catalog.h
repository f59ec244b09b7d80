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
  const char* Description;  // the command's own help, lines of at most 80 columns
};

// Every subcommand, in the order the program's help lists them.
const std::vector<CommandSpec>& Commands();

// The subcommand named exactly `name`, or nullptr.
const CommandSpec* FindCommand(const std::string& name);

// "no argument", "1 argument", "1 or 3 arguments", ... for usage errors.
std::string DescribeCounts(unsigned allowedCounts);

}  // namespace qrconfig
