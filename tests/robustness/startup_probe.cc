#include "robustness/startup_probe.h"

#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>

#include "tests/model/model_test_support.h"

namespace {

const char* const kDb1 = "\\Quorin\\DBDrivers\\Crv\\db1";

std::string Quoted(const std::string& text) {
  return "'" + text + "'";
}

}  // namespace

std::string StartupProbe::Outcome(FileKind kind, Initialization::Mode mode) const {
  std::string outcome;
  try {
    ConfigStartup::Initialize(mode);
    outcome = "ok " + Probe(kind);
  } catch (const QRError& error) {
    outcome = Render(error);
  }
  ConfigStartup::Destroy();
  return outcome;
}

std::string StartupProbe::Probe(FileKind kind) const {
  ConfigManager& manager = ConfigManager::Instance();
  auto fieldOf = [&](const std::string& path, const std::string& name) {
    return ValueText(manager.GetTree().Find(ConfigManager::NodePath(path)).value().Find(name));
  };
  try {
    switch (kind) {
      case FileKind::Main:
        return fieldOf("\\Quorin\\DBDrivers", "Probe");
      case FileKind::DriverList: {
        std::string aliases;
        for (const auto& [name, driver] : manager.GetDriverNames()) {
          if (driver == "Crv" && name != "Crv")
            aliases += (aliases.empty() ? "" : " ") + Quoted(name);
        }
        return aliases.empty() ? "no alias" : aliases;
      }
      case FileKind::Setup:
        return fieldOf(kDb1, "SetupProbe");
      case FileKind::DataAccess:
        return fieldOf(kDb1, "Probe");
      case FileKind::Localized:
        return ValueText(
            manager.GetLocalizedDriver("Crv", manager.GetLocale("en", "")).value().Find("Comment"));
      case FileKind::PlatformList:
        return Quoted(manager.GetPlatformCharSet("Probe"));
      case FileKind::CharSetTable:
        return Quoted(manager.GetCharSetTableEntry("Crv", "db1", "Probe"));
    }
  } catch (const QRError& error) {
    return Render(error);
  }
  return "?";
}

std::string StartupProbe::Render(const QRError& error) const {
  std::string argument = error.Argument().str();
  for (std::size_t at = argument.find(m_Install.Dir()); at != std::string::npos;
       at = argument.find(m_Install.Dir(), at + 1)) {
    argument.replace(at, m_Install.Dir().size(), "@");
  }
  return std::to_string(error.Code()) + (argument.empty() ? "" : " " + argument);
}

std::string Nest(int count, const std::string& name, const std::string& inner,
                 const std::string& attributes) {
  const std::string open = "<" + name + attributes + ">", close = "</" + name + ">";
  std::string text;
  text.reserve(static_cast<std::size_t>(count) * (open.size() + close.size()) + inner.size());
  for (int i = 0; i < count; ++i) text += open;
  text += inner;
  for (int i = 0; i < count; ++i) text += close;
  return text;
}

std::string InChild(const std::function<std::string()>& work, int deadlineSeconds) {
  int channel[2];
  if (::pipe(channel) != 0) return "no pipe";
  const pid_t child = ::fork();
  if (child == 0) {
    ::close(channel[0]);
    const std::string result = work();
    for (std::size_t done = 0; done < result.size();) {
      const ssize_t n = ::write(channel[1], result.data() + done, result.size() - done);
      if (n <= 0) ::_exit(3);
      done += static_cast<std::size_t>(n);
    }
    ::_exit(0);  // no destructors, no leak check: the parent judges the result
  }
  ::close(channel[1]);
  std::string result;
  bool timedOut = false;
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(deadlineSeconds);
  for (;;) {
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
        deadline - std::chrono::steady_clock::now());
    pollfd ready{channel[0], POLLIN, 0};
    if (left.count() <= 0 || ::poll(&ready, 1, static_cast<int>(left.count())) == 0) {
      timedOut = true;
      break;
    }
    char buffer[4096];
    const ssize_t n = ::read(channel[0], buffer, sizeof buffer);
    if (n <= 0) break;
    result.append(buffer, static_cast<std::size_t>(n));
  }
  ::close(channel[0]);
  if (child < 0) return "no child";
  if (timedOut) ::kill(child, SIGKILL);
  int status = 0;
  ::waitpid(child, &status, 0);
  if (timedOut) return "timed out";
  if (WIFSIGNALED(status)) return "killed by signal " + std::to_string(WTERMSIG(status));
  if (WEXITSTATUS(status) != 0) return "exit " + std::to_string(WEXITSTATUS(status));
  return result;
}
