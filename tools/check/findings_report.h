// FindingsReport: the output of `qrconfig check`, for people or as JSON.
#pragma once

#include <ostream>

#include "check/checker.h"

namespace qrconfig {

// For people: one block per finding,
//   <file>:<line>:<column>: <severity>: <message> [<kind>]
//       <advice>
// (line and column only when known; "check" instead of a file when there is none), then a
// summary line with the counts and whether the library loads the installation.
//
// As JSON: {"configDirectory", "mode", "platform", "loads", "summary": {"errors",
// "warnings", "notes"}, "findings": [{"severity", "kind", "file", "line", "column",
// "message", "advice"}]}, with "line" and "column" null when unknown and "file" null when
// there is none.
class FindingsReport {
 public:
  static void WriteText(const CheckResult& result, const char* mode, std::ostream& out);
  static void WriteJson(const CheckResult& result, const char* mode, std::ostream& out);
};

}  // namespace qrconfig
