// Findings of `qrconfig check`: what is wrong, where, and what to do.
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <tuple>
#include <vector>

#include "qr_config/config/readers/load_observer.h"

namespace qrconfig {

// The library's own severities (load_observer.h): error, the start-up fails; warning,
// something silently has no effect; note, something is left out by design. A smaller value
// is more severe.
using Severity = DiagnosticSeverity;

// "error", "warning" or "note".
inline const char* SeverityName(Severity severity) {
  return DiagnosticSeverityName(severity);
}

struct Finding {
  Severity Level = Severity::Error;
  std::string Kind;          // DiagnosticKindName of the library's diagnostic
  std::string File;          // the path as the library opened it, from the configuration
                             // directory's name as given, so usable from where qrconfig runs;
                             // empty for a finding about no particular file
  unsigned long Line = 0;    // 1-based; 0 when there is no line
  unsigned long Column = 0;  // 1-based; 0 when there is no column
  std::string Message;       // what is wrong, as a sentence
  std::string Advice;        // what to do, as a sentence
  bool Summary = false;      // stands for the findings of its kind not kept (Findings)
};

// The findings of one check run, in the order they were added.
//
// A file can hold millions of instances of one finding (a generated data-access file of
// inactive databases): of each kind and severity, only the first kMaxPerFile findings of a
// file are kept, and one more finding says how many others there were. Counts include them
// all. So memory is bounded by the number of files, not by their size.
class Findings {
 public:
  static constexpr std::size_t kMaxPerFile = 100;

  explicit Findings(std::string configDirectory);

  // Adds a finding about the file at `path` (the configuration directory's name joined with
  // the file's place in it, or empty).
  void Add(Severity level, const char* kind, const std::string& path, unsigned long line,
           std::string message, std::string advice, unsigned long column = 0);

  // The number of findings of `level` added, kept or not.
  std::size_t Count(Severity level) const;
  // The findings of `threshold` or above, sorted by file (byte order; findings without a
  // file last), then by severity (errors first), then by line and column; findings that
  // tie keep the order they were added in. A group of findings cut at kMaxPerFile ends with
  // one finding (line 0, after the group's others) that tells how many more there were.
  // Valid until the next Add.
  std::vector<const Finding*> Sorted(Severity threshold) const;
  const std::string& ConfigDirectory() const { return m_ConfigDirectory; }

 private:
  struct Group {
    std::size_t Added = 0;
  };

  std::string m_ConfigDirectory;
  std::vector<Finding> m_Findings;
  std::map<std::tuple<std::string, std::string, Severity>, Group> m_Groups;
  std::size_t m_Counts[3] = {0, 0, 0};
  mutable std::vector<Finding> m_Summaries;
};

}  // namespace qrconfig
