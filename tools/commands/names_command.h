// The names command: names alone, one per line, for scripts and shell completion.
#pragma once

#include <ostream>

#include "cli/command_line.h"
#include "qr_config/config/manager/config_manager.h"

namespace qrconfig {

// Throws UsageError when the first argument of names is not one of commands, options, nodes,
// fields, drivers or databases, or the number of arguments does not suit it (fields and
// databases take one more, nodes at most one more, the others none).
void CheckNamesArguments(const Invocation& invocation);

// True for the lists that need no configuration: commands and options.
bool NamesNeedNoConfiguration(const Invocation& invocation);

// names commands or names options (NamesNeedNoConfiguration), without a manager.
int RunStaticNames(const Invocation& invocation, std::ostream& out);

// Every list. nodes: the node paths of the subtree (default the whole tree) with '/' as the
// separator, in tree order; fields: the field names of a node in order; drivers: native
// drivers then the others, each in driver-list order; databases: the database nodes loaded
// below the driver. With --json, one JSON array of strings. Throws LookupError for an
// unknown node or driver.
int RunNames(const Invocation& invocation, ConfigManager& config, std::ostream& out);

}  // namespace qrconfig
