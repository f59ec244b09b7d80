#include "check/findings.h"

#include <algorithm>
#include <tuple>

namespace qrconfig {

Findings::Findings(std::string configDirectory) : m_ConfigDirectory(std::move(configDirectory)) {}

void Findings::Add(Severity level, const char* kind, const std::string& path, unsigned long line,
                   std::string message, std::string advice, unsigned long column) {
  ++m_Counts[static_cast<int>(level)];
  if (!path.empty() && ++m_Groups[{path, kind, level}].Added > kMaxPerFile) return;
  Finding finding;
  finding.Level = level;
  finding.Kind = kind;
  finding.File = path;
  finding.Line = line;
  finding.Column = column;
  finding.Message = std::move(message);
  finding.Advice = std::move(advice);
  m_Findings.push_back(std::move(finding));
}

std::size_t Findings::Count(Severity level) const {
  return m_Counts[static_cast<int>(level)];
}

std::vector<const Finding*> Findings::Sorted(Severity threshold) const {
  m_Summaries.clear();
  for (const auto& [key, group] : m_Groups) {
    if (group.Added <= kMaxPerFile) continue;
    Finding summary;
    std::tie(summary.File, summary.Kind, summary.Level) = key;
    summary.Summary = true;
    summary.Message = std::to_string(group.Added - kMaxPerFile) + " more " +
                      SeverityName(summary.Level) + "s of this kind in this file are not shown " +
                      "(the first " + std::to_string(kMaxPerFile) + " are).";
    m_Summaries.push_back(std::move(summary));
  }
  std::vector<const Finding*> sorted;
  const std::vector<Finding>* lists[] = {&m_Findings, &m_Summaries};
  for (const std::vector<Finding>* list : lists) {
    for (const Finding& finding : *list) {
      if (finding.Level <= threshold) sorted.push_back(&finding);
    }
  }
  // A summary follows the group it closes.
  const auto line = [](const Finding* f) { return f->Summary ? ~0ul : f->Line; };
  std::stable_sort(sorted.begin(), sorted.end(), [&](const Finding* a, const Finding* b) {
    if (a->File.empty() != b->File.empty()) return b->File.empty();
    return std::make_tuple(a->File, a->Level, line(a), a->Column) <
           std::make_tuple(b->File, b->Level, line(b), b->Column);
  });
  return sorted;
}

}  // namespace qrconfig
