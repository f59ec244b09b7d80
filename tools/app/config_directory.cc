#include "app/config_directory.h"

#include <sys/stat.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "qr_config/platform/registry.h"

namespace qrconfig {

namespace {

// The two files whose absence means that a directory holds no configuration at all; the
// library reports anything less (one of them missing) itself.
constexpr const char* kMainFile = "qr.cfg";
constexpr const char* kDriverList = "driver.cfg";

bool IsFile(const std::string& path) {
  struct stat status {};
  return ::stat(path.c_str(), &status) == 0 && !S_ISDIR(status.st_mode);
}

}  // namespace

ConfigDirectoryChoice ConfigDirectoryLocator::Locate(const Invocation& invocation,
                                                     const std::string& environment) {
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
  throw UsageError(std::string("no configuration directory given: name one with --config-dir "
                               "DIR or the environment variable ") +
                   Registry::kConfigDirectoryVariable);
}

ConfigDirectoryChoice ConfigDirectoryLocator::Locate(const Invocation& invocation) {
  const char* environment = std::getenv(Registry::kConfigDirectoryVariable);
  ConfigDirectoryChoice choice = Locate(invocation, environment != nullptr ? environment : "");
  // The library joins names to the directory with a separator of its own.
  while (choice.Path.size() > 1 && choice.Path.back() == '/') choice.Path.pop_back();
  return choice;
}

std::string ConfigDirectoryLocator::Problem(const ConfigDirectoryChoice& choice) {
  const std::string named =
      "the configuration directory " + choice.Path + " (from " + choice.Source + ")";
  struct stat status {};
  if (::stat(choice.Path.c_str(), &status) != 0) {
    if (errno == ENOENT || errno == ENOTDIR) return named + " does not exist";
    return named + " cannot be read: " + std::strerror(errno);
  }
  if (!S_ISDIR(status.st_mode)) return named + " is not a directory";
  if (!IsFile(choice.Path + "/" + kMainFile) && !IsFile(choice.Path + "/" + kDriverList))
    return named + " holds no configuration: it has neither " + kMainFile + " nor " + kDriverList;
  return "";
}

}  // namespace qrconfig
