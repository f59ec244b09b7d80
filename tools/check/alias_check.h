// AliasCheck: driver and database names and aliases that collide and lose.
#pragma once

#include "check/check.h"

namespace qrconfig {

// The name tables keep the first entry of a key, so a later name or alias equal to an earlier
// one silently resolves to the earlier driver or database. Reports, as warnings of kind
// alias-collision, with the line of the losing declaration:
//  - in the driver list, a driver declared twice, a driver name or alias already taken by an
//    earlier driver;
//  - in the data-access files of a driver (in loading order), a database declared twice, a
//    database name or alias already taken by an earlier database of the same driver.
class AliasCheck : public Check {
 public:
  void Run(const Installation& installation, Findings& findings) const override;
};

}  // namespace qrconfig
