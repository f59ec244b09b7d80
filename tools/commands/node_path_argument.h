// Node paths as users type them on a command line.
#pragma once

#include <string>

#include "qr_config/config/model/node_path.h"

namespace qrconfig {

// The node path that `text` names. A text starting with '/' uses '/' as its separator, for
// shells ("/Quorin/DBDrivers" is "\Quorin\DBDrivers"); any other text is taken as it is
// (see ConfigManager::NodePath for the splitting rules).
ConfigManagerTypes::NodePath NodePathArgument(const std::string& text);

}  // namespace qrconfig
