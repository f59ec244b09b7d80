// RunTool: the whole of qrconfig behind main().
#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace qrconfig {

// Exit statuses.
inline constexpr int kExitSuccess = 0;
inline constexpr int kExitFailure = 1;   // the configuration does not load, a lookup fails,
                                         // the output cannot be written, check reports an error
inline constexpr int kExitUsage = 2;     // the command line is wrong or names no directory
inline constexpr int kExitWarnings = 3;  // check reports warnings but no error

// Runs qrconfig with `arguments` (those after the program name), writing results to `out`
// and failures to `err` (with --json to `out`, as JSON: WriteFailure); returns the exit
// status. Never throws: every failure becomes a message and a status of 1 or 2; --active in
// library mode adds a note on `err`. Flushes `out` and reports a failed write on `err` with
// status 1. Sets up and tears down the process-wide registry and process description
// (ToolEnvironment) and loads and destroys the configuration, so it runs while nothing else
// in the process uses the library.
int RunTool(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err);

}  // namespace qrconfig
