// Checker: runs every check of `qrconfig check` on one installation.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "check/findings.h"
#include "qr_config/config/manager/initialization.h"

namespace qrconfig {

// The outcome of a check run.
struct CheckResult {
  Findings Found;
  bool Loaded = false;  // the library loads the installation
};

// Reads the installation (Installation) and runs the checks in this order: XML errors,
// vocabulary, value layout, main file, setup files, aliases, databases, localised files, and
// last the library's own load (LoadCheck). The process must be set up the way the library
// should load (registry, process description, registrations: ToolEnvironment) and no
// configuration may be loaded. Throws only for a lack of memory.
class Checker {
 public:
  static CheckResult Run(const std::string& configDirectory, Initialization::Mode mode,
                         const std::vector<std::pair<std::string, std::string>>& activeSources);
};

}  // namespace qrconfig
