#include "app/tool_environment.h"

#include "app/platform_profile.h"
#include "qr_config/config/manager/config_manager.h"
#include "qr_config/platform/process.h"
#include "qr_config/platform/registry.h"

namespace qrconfig {

ToolEnvironment::ToolEnvironment(const Invocation& invocation, const std::string& configDirectory) {
  Registry::ClearParameters();
  for (const auto& [name, value] : invocation.Parameters) Registry::SetParameter(name, value);
  Registry::SetParameter(Registry::kConfigDirectory, configDirectory);
  if (!invocation.Platform.empty()) Process::Configure(PlatformSettings(invocation.Platform));
  for (const auto& [driver, pattern] : invocation.ActiveSources)
    ConfigManager::AddActiveDataSource(driver, pattern);
}

ToolEnvironment::~ToolEnvironment() {
  Registry::ClearParameters();
  Process::Reset();
}

}  // namespace qrconfig
