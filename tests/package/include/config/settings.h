// The consumer's own config/settings.h, beside the library's config/ headers.
#pragma once

namespace consumer {
inline const char* DriverAlias() {
  return "CRV";
}
}  // namespace consumer
