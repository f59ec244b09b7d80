// The check command.
#pragma once

#include <ostream>
#include <string>

#include "cli/command_line.h"

namespace qrconfig {

// check: runs the Checker on `configDirectory` in the invocation's mode and writes its
// findings (FindingsReport, text or JSON). Returns 1 when there is an error or a warning,
// 0 otherwise. The process must be set up (ToolEnvironment) and no configuration loaded.
int RunCheck(const Invocation& invocation, const std::string& configDirectory, std::ostream& out);

}  // namespace qrconfig
