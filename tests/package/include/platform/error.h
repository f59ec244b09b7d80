// The consumer's own platform/error.h: a name that the library's headers must never reach.
// No #pragma once: a second inclusion, from a header of the library, must be seen.
#ifdef QR_CONFIG_LIBRARY_HEADERS_SEEN
#error "a header of qr_config reached the consumer's platform/error.h"
#endif

#ifndef CONSUMER_PLATFORM_ERROR_H
#define CONSUMER_PLATFORM_ERROR_H
namespace consumer {
inline const char* ErrorPrefix() {
  return "consumer:";
}
}  // namespace consumer
#endif
