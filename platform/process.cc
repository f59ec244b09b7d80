#include "qr_config/platform/process.h"

#include <algorithm>
#include <iterator>

namespace {

// The running platform first, then the families it belongs to.
#if defined(__linux__) && defined(__x86_64__)
const char* const kPlatformNames[] = {"Linux-x86_64", "Linux", "Unix"};
#elif defined(__linux__) && defined(__aarch64__)
const char* const kPlatformNames[] = {"Linux-aarch64", "Linux", "Unix"};
#elif defined(__linux__)
const char* const kPlatformNames[] = {"Linux", "Unix"};
#else
const char* const kPlatformNames[] = {"Unix"};
#endif

}  // namespace

Process::Settings Process::Defaults() {
  Settings settings;
  settings.Name = kPlatformNames[0];
  settings.CharSetName = "UTF-8";
  settings.PlatformNames.assign(std::begin(kPlatformNames), std::end(kPlatformNames));
  // The families always hold the running platform, whatever the build target.
  std::vector<std::string> linuxFamily = {"Linux-x86_64", "Linux-aarch64"};
  if (std::find(linuxFamily.begin(), linuxFamily.end(), settings.Name) == linuxFamily.end()) {
    linuxFamily.push_back(settings.Name);
  }
  settings.OSLists = {{"Unix", linuxFamily},
                      {"Linux", linuxFamily},
                      {"Linux-x86_64", {"Linux-x86_64"}},
                      {"Linux-aarch64", {"Linux-aarch64"}}};
  return settings;
}

Process& Process::Mutable() {
  static Process instance(Defaults());
  return instance;
}

const Process& Process::Instance() {
  return Mutable();
}

void Process::Configure(const Settings& settings) {
  Mutable().m_Settings = settings;
}

void Process::Reset() {
  Mutable().m_Settings = Defaults();
}

std::vector<std::string> Process::OSList(const std::string& platform) const {
  auto entry = m_Settings.OSLists.find(platform);
  if (entry != m_Settings.OSLists.end()) return entry->second;
  if (platform.empty()) return {m_Settings.Name};
  return {platform};
}

bool Process::PlatformSupported(const std::string& name) const {
  const auto& names = m_Settings.PlatformNames;
  return std::find(names.begin(), names.end(), name) != names.end();
}
