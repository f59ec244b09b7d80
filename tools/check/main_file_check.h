// MainFileCheck: the settings, defaults, locales and character sets of the main file.
#pragma once

#include "check/check.h"

namespace qrconfig {

// Checks what the start-up takes from the main file and the platform character-set list:
//  - a main-file reader that stops without an XML error (QRError 267), with the single
//    "Trace" outside any group that causes it (kind structure, error);
//  - the settings the start-up reads: "Setup File Extension", "Config File Extension",
//    "CharSet List Extension" and "SQL External Extension" must be texts, "Ignore Driver Load
//    Failure" a Bool (kind value-type, error, at the parameter's line); the first three, and
//    "Ignore Driver Load Failure" in library mode, must exist (kind missing-setting, error);
//  - "Status" and "Library Name" of "DriverDefaults" must be a Long and a String, or every
//    driver fails (value-type, error);
//  - parameters of the selected "Library"/"Server" section that change nothing because no
//    setting of that name exists or its type differs (value-type, warning), and elements of
//    "Settings" placed after a mode section, which the other mode ignores (ignored-element,
//    warning), and parameters outside any section (ignored-element, warning);
//  - database nodes the main file makes below DBDrivers without a text "Directory"
//    (missing-setting, error);
//  - a locale table for the running platform (no-locale, error);
//  - the platform character-set list: readable, with a section for the platform or one of its
//    families (missing-file or charset-list, error).
class MainFileCheck : public Check {
 public:
  void Run(const Installation& installation, Findings& findings) const override;
};

}  // namespace qrconfig
