// Which configuration directory qrconfig reads.
#pragma once

#include <string>

#include "cli/command_line.h"

namespace qrconfig {

// The directory and where the choice came from, for messages ("--config-dir", ...).
struct ConfigDirectoryChoice {
  std::string Path;
  std::string Source;
};

// Chooses the configuration directory, first match wins:
//  1. --config-dir, or a --param "Config Directory=..." (giving both is a UsageError);
//  2. the environment variable QR_CONFIG_DIR when set and not empty;
//  3. the installed sample: <directory of the executable>/../share/qr_config/sample-config
//     (the path from the install's bin directory to its data directory, fixed at build time),
//     when it is a directory; an installed tree may be moved as a whole;
//  4. the sample in the source tree the tool was built from (the build tree's tool).
// The directory is not checked further: a missing one fails the load with a clear error.
class ConfigDirectoryLocator {
 public:
  // The choice for `invocation`, with `environment` as the value of QR_CONFIG_DIR (empty when
  // unset) and `executable` as the path of the running program (empty when unknown).
  static ConfigDirectoryChoice Locate(const Invocation& invocation, const std::string& environment,
                                      const std::string& executable);
  // The same with the real environment and executable, without trailing slashes.
  static ConfigDirectoryChoice Locate(const Invocation& invocation);

  // The path of the running program (from /proc/self/exe); empty when it cannot be read.
  static std::string ExecutablePath();
};

}  // namespace qrconfig
