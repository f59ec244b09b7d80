// ToolEnvironment: the process set up the way the options ask, before the library loads.
#pragma once

#include <string>

#include "cli/command_line.h"

namespace qrconfig {

// On construction:
//  - the registry is emptied, then receives every --param in order (a later one of the same
//    name replaces an earlier one) and "Config Directory" = `configDirectory`;
//  - with --platform, the process description becomes PlatformSettings(platform);
//  - every --active pair is registered with ConfigManager::AddActiveDataSource (such
//    registrations last for the life of the process and take effect in server mode only).
// On destruction the registry is emptied and the process description reset to the build
// defaults. One environment at a time; not synchronised (Registry and Process are
// process-wide).
class ToolEnvironment {
 public:
  ToolEnvironment(const Invocation& invocation, const std::string& configDirectory);
  ~ToolEnvironment();
  ToolEnvironment(const ToolEnvironment&) = delete;
  ToolEnvironment& operator=(const ToolEnvironment&) = delete;
};

}  // namespace qrconfig
