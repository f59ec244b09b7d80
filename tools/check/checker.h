// Checker: `qrconfig check`, a consumer of what the library reports while it loads.
#pragma once

#include <string>

#include "check/findings.h"
#include "qr_config/config/manager/initialization.h"

namespace qrconfig {

// The outcome of a check run.
struct CheckResult {
  Findings Found;
  bool Loaded = false;  // the library loads the installation
};

// Loads the installation once with the library, with a LoadObserver that keeps going past
// errors and asks for the localised driver files too, and turns every diagnostic into a
// finding: the library's severity, kind, file, line, column and message, plus the nearest
// spelling of a misspelt name (from the names the library says it could have meant) and a
// sentence on what to do. Nothing here reads a file or decides what one means. Last comes the
// library's verdict: a "load-failure" finding when the start-up fails.
//
// The process must be set up the way the library should load (registry, process
// description, registrations: ToolEnvironment) and no configuration may be loaded. Throws
// only for a lack of memory.
class Checker {
 public:
  static CheckResult Run(const std::string& configDirectory, Initialization::Mode mode);

  // What to do about a finding of `kind`, as one sentence.
  static const char* AdviceFor(DiagnosticKind kind);
};

}  // namespace qrconfig
