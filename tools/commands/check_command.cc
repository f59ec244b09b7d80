#include "commands/check_command.h"

#include "app/tool.h"
#include "check/checker.h"
#include "check/findings_report.h"

namespace qrconfig {

int RunCheck(const Invocation& invocation, const std::string& configDirectory, std::ostream& out) {
  const CheckResult result = Checker::Run(configDirectory, invocation.Mode);
  const char* mode = invocation.Mode == Initialization::Server ? "server" : "library";
  ReportOptions options;
  options.Threshold = invocation.Threshold;
  options.Quiet = invocation.Quiet;
  if (invocation.Json) {
    FindingsReport::WriteJson(result, mode, options, out);
  } else {
    FindingsReport::WriteText(result, mode, options, out);
  }
  return CheckStatus(result.Found, FindingsReport::ShownFrom(options));
}

int CheckStatus(const Findings& findings, Severity shownFrom) {
  if (findings.Count(Severity::Error) > 0) return kExitFailure;
  if (shownFrom != Severity::Error && findings.Count(Severity::Warning) > 0) return kExitWarnings;
  return kExitSuccess;
}

}  // namespace qrconfig
