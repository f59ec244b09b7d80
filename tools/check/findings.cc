#include "check/findings.h"

#include <algorithm>
#include <tuple>

namespace qrconfig {

Findings::Findings(std::string configDirectory) : m_ConfigDirectory(std::move(configDirectory)) {}

void Findings::Add(Severity level, const char* kind, const std::string& path, unsigned long line,
                   std::string message, std::string advice, unsigned long column) {
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
  return static_cast<std::size_t>(
      std::count_if(m_Findings.begin(), m_Findings.end(),
                    [level](const Finding& f) { return f.Level == level; }));
}

std::vector<const Finding*> Findings::Sorted(Severity threshold) const {
  std::vector<const Finding*> sorted;
  for (const Finding& finding : m_Findings) {
    if (finding.Level <= threshold) sorted.push_back(&finding);
  }
  std::stable_sort(sorted.begin(), sorted.end(), [](const Finding* a, const Finding* b) {
    if (a->File.empty() != b->File.empty()) return b->File.empty();
    return std::tie(a->File, a->Level, a->Line, a->Column) <
           std::tie(b->File, b->Level, b->Line, b->Column);
  });
  return sorted;
}

}  // namespace qrconfig
