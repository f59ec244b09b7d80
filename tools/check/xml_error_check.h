// XmlErrorCheck: files that cannot be read, or are not well-formed XML.
#pragma once

#include "check/check.h"

namespace qrconfig {

// Reports every scanned file that the XML layer refuses, with the layer's line, column and
// message (kind xml-error), and the files and directories the start-up cannot do without
// when they are missing (kind missing-file): qr.cfg, driver.cfg and the setup directory.
// Problems of the main file, the driver list and the localised files are errors; those of
// setup and data-access files are errors when driver-load failures are not ignored, and
// warnings (the driver is skipped) when they are.
class XmlErrorCheck : public Check {
 public:
  void Run(const Installation& installation, Findings& findings) const override;
};

}  // namespace qrconfig
