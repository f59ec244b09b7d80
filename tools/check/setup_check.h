// SetupCheck: setup files and the drivers and data-access files they name.
#pragma once

#include "check/check.h"

namespace qrconfig {

// For every entry of the setup directory, in listing order:
//  - left out for its ".32." name (setup-skipped, note);
//  - naming no driver (setup-no-driver, warning), a driver the driver list does not declare
//    (unknown-driver, warning, with the closest driver name), a driver that is not native
//    (non-native-driver, note), or a driver the active data sources leave out
//    (driver-skipped, note): the loader skips all of these;
//  - naming a data-access file that does not exist (missing-data-file: an error when
//    driver-load failures are not ignored, else a warning since the driver loads nothing).
class SetupCheck : public Check {
 public:
  void Run(const Installation& installation, Findings& findings) const override;
};

}  // namespace qrconfig
