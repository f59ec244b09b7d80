// The two modes in which a host initialises the configuration.
#pragma once

#include <cstdint>

namespace Initialization {

// Server (0): the main file's "Server" section applies; locale entries are filed under every
// operating-system name of their platform; the host's registered active data sources replace
// the main file's; every driver-load failure is skipped.
// Library (1): the main file's "Library" section applies; locale entries are filed under the
// running platform only; the main file's active data sources stand; the main file's
// "Ignore Driver Load Failure" decides whether a driver-load failure is skipped.
enum Mode : std::int32_t { Server = 0, Library = 1 };

}  // namespace Initialization
