// The help texts of qrconfig.
#pragma once

#include <ostream>

#include "cli/command_catalog.h"

namespace qrconfig {

// The program's help: usage, every command with its summary, the options, exit statuses.
void WriteProgramHelp(std::ostream& out);

// One command's help: its usage line, description and the options.
void WriteCommandHelp(const CommandSpec& command, std::ostream& out);

}  // namespace qrconfig
