// The library's version, as built.
#pragma once

#include "qr_config/platform/qr_export.h"

namespace qr_config {
// "major.minor.patch" of the library that is loaded (not of the headers compiled against).
QR_API const char* Version() noexcept;
}  // namespace qr_config
