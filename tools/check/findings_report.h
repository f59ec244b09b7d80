// FindingsReport: the output of `qrconfig check`, for people or as JSON.
#pragma once

#include <ostream>
#include <string>

#include "check/checker.h"

namespace qrconfig {

// What a report shows.
struct ReportOptions {
  Severity Threshold = Severity::Note;  // findings less severe than this are left out
  bool Quiet = false;                   // no notes and no summary line
};

// Both forms list the findings in the order of Findings::Sorted.
//
// For people: one block per finding,
//   <file>:<line>:<column>: <severity>: <message> [<kind>]
//       <advice>
// (line and column only when known; "check" instead of a file when there is none), so that
// editors and terminals can jump to <file>:<line>. Control characters in every text
// (file names included) are written as \xNN, so that a finding is always one line. Then a
// summary line with the counts of all findings (shown or not) and whether the library
// loads the installation; with Quiet there is no summary, so a clean installation prints
// nothing.
//
// As JSON: {"configDirectory", "mode", "platform", "loads", "threshold", "summary":
// {"errors", "warnings", "notes"}, "findings": [{"severity", "kind", "file", "line",
// "column", "message", "advice"}]}, with "line" and "column" null when unknown and "file"
// null when there is none; the summary counts all findings, "findings" holds the shown ones.
class FindingsReport {
 public:
  static void WriteText(const CheckResult& result, const char* mode, const ReportOptions& options,
                        std::ostream& out);
  static void WriteJson(const CheckResult& result, const char* mode, const ReportOptions& options,
                        std::ostream& out);

  // The least severity shown under `options`.
  static Severity ShownFrom(const ReportOptions& options);

  // `text` with every control character (below 0x20, and 0x7f) written as \xNN.
  static std::string Escaped(const std::string& text);
};

}  // namespace qrconfig
