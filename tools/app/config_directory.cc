#include "app/config_directory.h"

#include <unistd.h>

#include <climits>
#include <cstdlib>

#include <Poco/File.h>
#include <Poco/Path.h>

#include "qr_config/platform/registry.h"

namespace qrconfig {

ConfigDirectoryChoice ConfigDirectoryLocator::Locate(const Invocation& invocation,
                                                     const std::string& environment,
                                                     const std::string& executable) {
  std::string fromParameter;
  for (const auto& [name, value] : invocation.Parameters) {
    if (name == Registry::kConfigDirectory) fromParameter = value;
  }
  if (!invocation.ConfigDirectory.empty()) {
    if (!fromParameter.empty()) {
      throw UsageError("give the configuration directory once: --config-dir or --param \"" +
                       std::string(Registry::kConfigDirectory) + "=...\", not both");
    }
    return {invocation.ConfigDirectory, "--config-dir"};
  }
  if (!fromParameter.empty()) return {fromParameter, "--param"};
  if (!environment.empty()) return {environment, Registry::kConfigDirectoryVariable};
  if (!executable.empty()) {
    Poco::Path installed(Poco::Path(executable).parent());
    installed.append(Poco::Path(QR_INSTALLED_SAMPLE_FROM_BINDIR, Poco::Path::PATH_UNIX));
    // realpath resolves the ".." and fails when the directory does not exist.
    char resolved[PATH_MAX];
    if (::realpath(installed.makeDirectory().toString().c_str(), resolved) != nullptr &&
        Poco::File(resolved).isDirectory())
      return {resolved, "the installed sample"};
  }
  return {QR_SOURCE_SAMPLE_DIR, "the sample of the source tree"};
}

ConfigDirectoryChoice ConfigDirectoryLocator::Locate(const Invocation& invocation) {
  const char* environment = std::getenv(Registry::kConfigDirectoryVariable);
  ConfigDirectoryChoice choice =
      Locate(invocation, environment != nullptr ? environment : "", ExecutablePath());
  // The library joins names to the directory with a separator of its own.
  while (choice.Path.size() > 1 && choice.Path.back() == '/') choice.Path.pop_back();
  return choice;
}

std::string ConfigDirectoryLocator::ExecutablePath() {
  char buffer[PATH_MAX];
  const ssize_t size = ::readlink("/proc/self/exe", buffer, sizeof buffer);
  if (size <= 0 || static_cast<std::size_t>(size) >= sizeof buffer) return "";
  return std::string(buffer, static_cast<std::size_t>(size));
}

}  // namespace qrconfig
