#include "check/findings.h"

#include <algorithm>

namespace qrconfig {

const char* SeverityName(Severity severity) {
  switch (severity) {
    case Severity::Error:
      return "error";
    case Severity::Warning:
      return "warning";
    case Severity::Note:
      break;
  }
  return "note";
}

Findings::Findings(std::string configDirectory)
    : m_ConfigDirectory(std::move(configDirectory)), m_Prefix(m_ConfigDirectory) {
  if (!m_Prefix.empty() && m_Prefix.back() != '/') m_Prefix += '/';
}

void Findings::Add(Severity level, const char* kind, const std::string& path, unsigned long line,
                   std::string message, std::string advice, unsigned long column) {
  Finding finding;
  finding.Level = level;
  finding.Kind = kind;
  finding.File = path;
  if (!m_Prefix.empty() && path.compare(0, m_Prefix.size(), m_Prefix) == 0)
    finding.File = path.substr(m_Prefix.size());
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

bool Findings::HasProblems() const {
  return Count(Severity::Error) + Count(Severity::Warning) > 0;
}

}  // namespace qrconfig
