// UnicodeManager: conversion of texts in a named character set to UTF-8.
//
// Conversions use the C library's iconv. Character-set names are iconv's (for example
// "UTF-8", "ISO-8859-1", "LATIN1", "CP1252", "UTF-16LE"); iconv's "//" suffixes and the empty
// name (the C locale's set) are refused. Thread-safe: every call opens its own conversion
// descriptor (a few microseconds), so calls on different threads share nothing.
#pragma once

#include <string>

#include "qr_config/platform/i18n_string.h"
#include "qr_config/platform/qr_export.h"

class UnicodeManager {
 public:
  // The process-wide instance; it holds no state.
  static UnicodeManager& Instance();

  UnicodeManager(const UnicodeManager&) = delete;
  UnicodeManager& operator=(const UnicodeManager&) = delete;

  // Sets `out` to `text` converted from `charSetName` to UTF-8. UTF-8 input is checked and
  // copied. Throws QRError(3, 256, QRErrorCode::CharSetConversion, charSetName) when the
  // character set is unknown to iconv, or when `text` holds a byte sequence that is invalid
  // or incomplete in it (for example a lone 0xFF in UTF-8); `out` is then unchanged.
  // Costs one pass over the text plus opening the descriptor.
  void PlatformToUTF8(const std::string& text, orv_utf8string& out, const std::string& charSetName);

 private:
  UnicodeManager() = default;
};
