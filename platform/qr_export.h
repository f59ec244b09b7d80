// Symbol visibility of the shared library. The library is compiled with
// -fvisibility=hidden; only what is marked QR_API is exported.
#pragma once

#if defined(QR_CONFIG_BUILDING)
#define QR_API __attribute__((visibility("default")))
#else
#define QR_API __attribute__((visibility("default")))
#endif
