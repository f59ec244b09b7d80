// The outcome of a start-up over the probe installation (TempInstallation::WriteBaseline) as
// one line of text, so that a table can state the exact result of a broken or hostile file:
// "ok <probe>" or the QRError as "<code> <argument>", the installation's directory in an
// argument shown as "@". A probe reads back the value its kind carries; values render as
// 'text' (String, UTF8String), 42 (Long) or true/false (Bool), and a probe that fails renders
// its QRError, so "ok 5 \Quorin\DBDrivers\Crv\db1" means db1 was not loaded. The DriverList
// probe is every alias of Crv in byte order, the PlatformList probe
// GetPlatformCharSet("Probe"), the CharSetTable probe db1's entry "Probe".
#pragma once

#include <functional>
#include <string>

#include "qr_config/qr_config.h"
#include "support/temp_installation.h"

class StartupProbe {
 public:
  explicit StartupProbe(const TempInstallation& install) : m_Install(install) {}

  // Initializes in `mode`, renders the outcome with the probe of `kind` and destroys the
  // manager again.
  std::string Outcome(FileKind kind, Initialization::Mode mode) const;
  std::string Render(const QRError& error) const;

 private:
  std::string Probe(FileKind kind) const;
  const TempInstallation& m_Install;
};

// Runs `work` in a child process and returns its result, or "timed out" (killed after
// `deadlineSeconds`), "killed by signal N" or "exit N": a crash or a hang of the library
// fails the test instead of killing or stalling the suite.
std::string InChild(const std::function<std::string()>& work, int deadlineSeconds = 60);

// `count` nested elements named `name` around `inner`.
std::string Nest(int count, const std::string& name, const std::string& inner,
                 const std::string& attributes = "");
