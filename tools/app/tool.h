// RunTool: the whole of qrconfig behind main().
#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace qrconfig {

// Exit statuses.
inline constexpr int kExitSuccess = 0;
inline constexpr int kExitFailure = 1;  // the configuration fails to load, a lookup fails,
                                        // or check finds an error or a warning
inline constexpr int kExitUsage = 2;    // the command line is wrong

// Runs qrconfig with `arguments` (those after the program name), writing results to `out`
// and messages to `err`; returns the exit status. Never throws: every failure becomes a
// message on `err` and status 1 or 2; --active in library mode adds a note on `err`. Sets up and
// tears down the process-wide registry and process description (ToolEnvironment) and loads and
// destroys the configuration, so it runs while nothing else in the process uses the library.
int RunTool(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err);

}  // namespace qrconfig
