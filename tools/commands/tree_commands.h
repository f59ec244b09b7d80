// The commands that show the configuration tree: tree and get.
#pragma once

#include <ostream>

#include "cli/command_line.h"
#include "qr_config/config/manager/config_manager.h"

namespace qrconfig {

// tree [NODEPATH]: the subtree at NODEPATH (default "\Quorin") as TreePrinter lays it out.
// Throws QRError 4 or 5 for a path that names no node. Returns the exit status.
int RunTree(const Invocation& invocation, ConfigManager& config, std::ostream& out);

// get NODEPATH [FIELD]: the node's fields (FieldLine each), or the first field named FIELD
// as its PlainValue alone. Throws QRError 4 or 5 for the path, 261 for a missing field.
int RunGet(const Invocation& invocation, ConfigManager& config, std::ostream& out);

}  // namespace qrconfig
