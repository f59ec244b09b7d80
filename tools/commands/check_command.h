// The check command.
#pragma once

#include <ostream>
#include <string>

#include "check/findings.h"
#include "cli/command_line.h"

namespace qrconfig {

// check: runs the Checker on `configDirectory` in the invocation's mode and writes its
// findings (FindingsReport, text or JSON) with the invocation's --severity and --quiet.
// Returns CheckStatus of the findings shown. The process must be set up (ToolEnvironment)
// and no configuration loaded.
int RunCheck(const Invocation& invocation, const std::string& configDirectory, std::ostream& out);

// 1 (kExitFailure) when `findings` hold an error, else 3 (kExitWarnings) when they hold a
// warning of `shownFrom` or above, else 0.
int CheckStatus(const Findings& findings, Severity shownFrom);

}  // namespace qrconfig
