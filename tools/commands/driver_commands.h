// The commands about drivers and databases: drivers, databases and resolve.
#pragma once

#include <ostream>

#include "cli/command_line.h"
#include "qr_config/config/manager/config_manager.h"

namespace qrconfig {

// drivers: every driver of the driver list, native ones first, each group in driver-list
// order, with its aliases (in name order) and the number of databases loaded for it.
int RunDrivers(const Invocation& invocation, ConfigManager& config, std::ostream& out);

// databases DRIVER: the databases loaded below the driver (a name or alias) in tree order,
// each with its aliases, "Library" field, the libraries of its "Libraries" children and its
// "Directory". A non-native driver has none. Throws QRError 22 for an unknown driver.
int RunDatabases(const Invocation& invocation, ConfigManager& config, std::ostream& out);

// resolve DRIVER [DATABASE]: the driver name, or the database name within that driver, alone.
// Throws QRError 22 for an unknown driver, 13 for an unknown database.
int RunResolve(const Invocation& invocation, ConfigManager& config, std::ostream& out);

}  // namespace qrconfig
