// LocalisedFileCheck: the drivers and messages of the localised driver files.
#pragma once

#include "check/check.h"

namespace qrconfig {

// For every localised driver file that reads whole: a <NetworkLayer> naming a driver the
// driver list does not declare (unknown-driver, warning: its texts are never shown), and a
// <NetworkLayer> without a "Name" message (ignored-element, warning: the reader drops its
// texts).
class LocalisedFileCheck : public Check {
 public:
  void Run(const Installation& installation, Findings& findings) const override;
};

}  // namespace qrconfig
