// LoadCheck: whether the library itself loads the installation.
#pragma once

#include "check/check.h"

namespace qrconfig {

// Initialises the configuration in the installation's mode, with the process as it is set
// up (ToolEnvironment), and destroys it again. When the start-up fails, reports its error as
// one finding of kind load-failure (error), with the file, line and column when the error
// names a file that the XML layer refused. Needs a process in which no configuration is
// loaded; Loaded() tells the outcome of the last Run.
class LoadCheck : public Check {
 public:
  void Run(const Installation& installation, Findings& findings) const override;
  bool Loaded() const { return m_Loaded; }

 private:
  mutable bool m_Loaded = false;
};

}  // namespace qrconfig
