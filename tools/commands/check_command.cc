#include "commands/check_command.h"

#include "app/tool.h"
#include "check/checker.h"
#include "check/findings_report.h"

namespace qrconfig {

int RunCheck(const Invocation& invocation, const std::string& configDirectory, std::ostream& out) {
  const CheckResult result =
      Checker::Run(configDirectory, invocation.Mode, invocation.ActiveSources);
  const char* mode = invocation.Mode == Initialization::Server ? "server" : "library";
  if (invocation.Json) {
    FindingsReport::WriteJson(result, mode, out);
  } else {
    FindingsReport::WriteText(result, mode, out);
  }
  return result.Found.HasProblems() ? kExitFailure : kExitSuccess;
}

}  // namespace qrconfig
