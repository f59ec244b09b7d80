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
//  2. the environment variable QR_CONFIG_DIR when set and not empty.
// There is no default: a tool that silently read some other installation would report on
// the wrong files, so with neither it throws UsageError.
class ConfigDirectoryLocator {
 public:
  // The choice for `invocation`, with `environment` as the value of QR_CONFIG_DIR (empty when
  // unset).
  static ConfigDirectoryChoice Locate(const Invocation& invocation, const std::string& environment);
  // The same with the real environment, without trailing slashes.
  static ConfigDirectoryChoice Locate(const Invocation& invocation);

  // Empty when the chosen directory exists and holds a main file (qr.cfg) or a driver list
  // (driver.cfg); otherwise one sentence (without its full stop) saying what is wrong: the
  // directory does not exist, is no directory, or holds neither file.
  static std::string Problem(const ConfigDirectoryChoice& choice);
};

}  // namespace qrconfig
