// ValueLayoutCheck: values the readers take differently from how they look.
#pragma once

#include "check/check.h"

namespace qrconfig {

// Reports, as warnings of kind value-layout, values whose layout changes what the reader
// takes:
//  - in the main, setup and data-access files, a value that does not stand on the line of
//    its start tag (the reader keeps only what precedes the last line break of each line, so
//    it gets indentation or nothing), and a "Parameter" value whose surrounding blanks turn a
//    Bool or Long into a String;
//  - in the driver list, an "Alias" spread over several lines (each line becomes an alias);
//  - in a localised file, a "Message" spread over several lines (only its last line stays).
class ValueLayoutCheck : public Check {
 public:
  void Run(const Installation& installation, Findings& findings) const override;
};

}  // namespace qrconfig
