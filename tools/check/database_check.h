// DatabaseCheck: the databases of the data-access files the loader reads.
#pragma once

#include "check/check.h"

namespace qrconfig {

// For every data-access file the loader reads:
//  - databases that are skipped (database-skipped): without an "Active" attribute (warning:
//    such a database is never loaded), with "Active" "No", for platforms the process does
//    not support, or outside the active data sources (notes); an active data-source pattern
//    that is no valid regular expression fails the driver (error);
//  - "Parameter" and "Library" values whose type differs from the field they update, where
//    the reader raises QRError 1 and the driver's loading stops (value-type, error);
//  - fields read after loading whose type makes them ineffective: "Extensions" and
//    "CharSet Table" must be texts (value-type, warning);
//  - databases that ask for a character-set table ("Unicode" missing or "CharSet") whose
//    table file is missing, unreadable or without a "CharSets" section (or one for the
//    platform): they get no table (charset-table, warning).
class DatabaseCheck : public Check {
 public:
  void Run(const Installation& installation, Findings& findings) const override;
};

}  // namespace qrconfig
