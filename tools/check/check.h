// Check: one concern of `qrconfig check`.
#pragma once

#include "check/findings.h"
#include "check/installation.h"

namespace qrconfig {

// One concern of the checker: it looks at the installation and adds what an administrator
// needs to fix to the findings. Checks only read; they may run in any order, but the Checker
// runs them in the order the report should show them.
class Check {
 public:
  virtual ~Check() = default;
  virtual void Run(const Installation& installation, Findings& findings) const = 0;
};

}  // namespace qrconfig
