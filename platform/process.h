// Process: the description of the running process the configuration depends on: the name of
// the running platform, the process's character set, the platform names it answers to and
// the operating-system families that platform texts in the configuration files stand for.
//
// Defaults come from the build target:
//   Linux on x86_64:  Name "Linux-x86_64",  PlatformNames {"Linux-x86_64", "Linux", "Unix"}
//   Linux on aarch64: Name "Linux-aarch64", PlatformNames {"Linux-aarch64", "Linux", "Unix"}
//   other Linux:      Name "Linux",         PlatformNames {"Linux", "Unix"}
//   other systems:    Name "Unix",          PlatformNames {"Unix"}
//   CharSetName "UTF-8";
//   OSLists: "Unix" and "Linux" -> {"Linux-x86_64", "Linux-aarch64"},
//            "Linux-x86_64" -> {"Linux-x86_64"}, "Linux-aarch64" -> {"Linux-aarch64"};
//            on the last two targets the running platform's name is appended to the "Unix"
//            and "Linux" lists, so that these families always include it.
//
// Threads: Instance() and the const operations may be used from any thread. Configure and
// Reset are for hosts and tests before the configuration is initialised: they change the one
// instance in place without a lock and must not run while any other thread reads it.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "qr_config/platform/qr_export.h"

class QR_API Process {
 public:
  struct Settings {
    std::string Name;                        // the running platform
    std::string CharSetName;                 // the process's character set
    std::vector<std::string> PlatformNames;  // most specific first; Name should be first
    std::map<std::string, std::vector<std::string>> OSLists;  // platform text -> OS names
  };

  // The process-wide instance, made from the build defaults on first use.
  static const Process& Instance();
  // Replaces the whole description of the instance (see Threads).
  static void Configure(const Settings& settings);
  // Restores the build defaults (see Threads).
  static void Reset();
  // The build defaults.
  static Settings Defaults();

  const std::string& Name() const { return m_Settings.Name; }
  const std::string& CharSetName() const { return m_Settings.CharSetName; }
  const std::vector<std::string>& PlatformNames() const { return m_Settings.PlatformNames; }

  // The operating-system names a platform text of a configuration file stands for, in order:
  // the OSLists entry of `platform` when there is one; otherwise, for the empty text, the
  // running platform's name alone; otherwise `platform` itself as a one-element list.
  std::vector<std::string> OSList(const std::string& platform) const;

  // True when `name` is exactly one of PlatformNames().
  bool PlatformSupported(const std::string& name) const;

 private:
  explicit Process(Settings settings) : m_Settings(std::move(settings)) {}
  static Process& Mutable();

  Settings m_Settings;
};
