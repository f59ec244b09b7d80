#include "qr_config/config/version.h"

namespace qr_config {
const char* Version() noexcept {
  return QR_CONFIG_VERSION;
}
}  // namespace qr_config
