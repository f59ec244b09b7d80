// The command line of qrconfig: options and subcommand, parsed strictly.
#pragma once

#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "check/findings.h"
#include "qr_config/config/manager/initialization.h"

namespace qrconfig {

// What the command line asks for.
struct Invocation {
  std::string Command;                 // a name of Commands(); empty with --help or --version
  std::vector<std::string> Arguments;  // the positional arguments after the command
  bool Help = false;                   // --help, -h or the command "help"
  bool Version = false;                // --version
  bool Json = false;                   // --json
  std::string ConfigDirectory;         // --config-dir; empty when not given
  Initialization::Mode Mode = Initialization::Library;             // --mode
  std::vector<std::pair<std::string, std::string>> Parameters;     // --param NAME=VALUE, in order
  std::vector<std::pair<std::string, std::string>> ActiveSources;  // --active DRIVER=PATTERN
  std::string Platform;                 // --platform; empty: the running platform
  bool Quiet = false;                   // --quiet (check)
  Severity Threshold = Severity::Note;  // --severity (check): the least severity reported
  bool ShowOrigin = false;              // --show-origin (list)
};

// A command line that qrconfig cannot run; what() is a sentence for the user without its
// full stop (exit status 2).
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// Parses the arguments that follow the program name. Options may stand before or after the
// command and its arguments; "--" ends the options. Option names are written in full (no
// abbreviations), as "--name VALUE" or "--name=VALUE"; the argument after an option that
// takes a value is always that value. Throws UsageError, worded "unknown option --x",
// "option --x ..." or "<command> takes ...", for an unknown, abbreviated or repeated option
// (only --param and --active repeat), a missing, unexpected or malformed option value, an
// option of check given to another command, a missing or unknown command (with the nearest
// command or option name when there is one), or a wrong number of arguments for the command.
// With --help or --version nothing else is checked, except that a command named with --help
// must exist. "help [COMMAND]" is the same as "[COMMAND] --help".
Invocation ParseCommandLine(const std::vector<std::string>& arguments);

// True when `arguments` ask for JSON output (a "--json" before any "--"), judged without
// parsing them, so that even a usage error can be reported as JSON.
bool AsksForJson(const std::vector<std::string>& arguments);

}  // namespace qrconfig
