// Text types of the middleware's internationalisation layer.
//
// orv_utf8string holds UTF-8 bytes; ucs2string holds UTF-16 code units (the unit type is
// `unsigned short`, the type the XML parser hands to the readers). The conversions between
// them never fail and never read outside their input:
//  - UTF-16 to UTF-8: an unpaired surrogate becomes U+FFFD (EF BF BD);
//  - UTF-8 to UTF-16: every byte that does not start a valid, shortest-form sequence of a
//    scalar value (overlong forms, surrogates, values above U+10FFFF, truncated sequences)
//    becomes one U+FFFD.
// A narrow text given to orv_utf8string directly is taken byte for byte, unchecked.
#pragma once

#include <cstddef>
#include <string>

#include "qr_config/platform/qr_export.h"

using ucs2char = unsigned short;
using ucs2basic_string = std::basic_string<ucs2char>;

class ucs2string;

// Appends the UTF-8 form of `count` UTF-16 units to `out`. Allocates only when `out` must grow.
QR_API void AppendUtf16AsUtf8(const ucs2char* units, std::size_t count, std::string& out);
// Appends the UTF-16 form of `count` UTF-8 bytes to `out`.
QR_API void AppendUtf8AsUtf16(const char* bytes, std::size_t count, ucs2basic_string& out);

class QR_API orv_utf8string {
 public:
  orv_utf8string() = default;
  // Byte for byte from a NUL-terminated narrow text; a null pointer gives the empty text.
  orv_utf8string(const char* bytes) : m_Bytes(bytes ? bytes : "") {}  // NOLINT: implicit
  orv_utf8string(const unsigned char* bytes)                          // NOLINT: implicit
      : orv_utf8string(reinterpret_cast<const char*>(bytes)) {}
  orv_utf8string(const char* bytes, std::size_t size) : m_Bytes(bytes, size) {}
  orv_utf8string(const std::string& bytes) : m_Bytes(bytes) {}        // NOLINT: implicit
  orv_utf8string(std::string&& bytes) : m_Bytes(std::move(bytes)) {}  // NOLINT: implicit
  // Converts UTF-16 to UTF-8 (see the file comment for invalid input).
  explicit orv_utf8string(const ucs2string& text);
  orv_utf8string(const ucs2char* units, std::size_t count) {
    AppendUtf16AsUtf8(units, count, m_Bytes);
  }

  const char* c_str() const noexcept { return m_Bytes.c_str(); }
  const char* data() const noexcept { return m_Bytes.data(); }
  std::size_t size() const noexcept { return m_Bytes.size(); }
  bool empty() const noexcept { return m_Bytes.empty(); }
  const std::string& str() const noexcept { return m_Bytes; }
  void clear() noexcept { m_Bytes.clear(); }
  // Replaces the text by `size` bytes, byte for byte, reusing the storage when it fits.
  void assign(const char* bytes, std::size_t size) { m_Bytes.assign(bytes, size); }
  // Replaces the text by the UTF-8 form of `count` UTF-16 units, reusing the storage.
  void assign_utf16(const ucs2char* units, std::size_t count) {
    m_Bytes.clear();
    AppendUtf16AsUtf8(units, count, m_Bytes);
  }

  friend bool operator==(const orv_utf8string& a, const orv_utf8string& b) {
    return a.m_Bytes == b.m_Bytes;
  }
  friend bool operator!=(const orv_utf8string& a, const orv_utf8string& b) { return !(a == b); }

 private:
  std::string m_Bytes;
};

class QR_API ucs2string {
 public:
  static constexpr std::size_t npos = ucs2basic_string::npos;

  ucs2string() = default;
  ucs2string(const ucs2char* units, std::size_t count) : m_Units(units, count) {}
  // Converts UTF-8 to UTF-16 (see the file comment for invalid input).
  explicit ucs2string(const orv_utf8string& text);
  explicit ucs2string(const char* utf8) : ucs2string(orv_utf8string(utf8)) {}

  // 0 when `units` (NUL-terminated) is exactly this text; otherwise negative or positive
  // like std::basic_string::compare. A null pointer compares as the empty text.
  int compare(const ucs2char* units) const noexcept;
  // Index of the last unit that is one of `set`, or npos.
  std::size_t find_last_of(const ucs2string& set) const noexcept {
    return m_Units.find_last_of(set.m_Units);
  }

  const ucs2char* c_str() const noexcept { return m_Units.c_str(); }
  const ucs2char* data() const noexcept { return m_Units.data(); }
  std::size_t size() const noexcept { return m_Units.size(); }
  bool empty() const noexcept { return m_Units.empty(); }
  const ucs2basic_string& units() const noexcept { return m_Units; }

  friend bool operator==(const ucs2string& a, const ucs2string& b) {
    return a.m_Units == b.m_Units;
  }

 private:
  ucs2basic_string m_Units;
};

// Equality of a zero-terminated UTF-16 text with a constant; the hot comparison of the readers.
inline bool operator==(const ucs2char* units, const ucs2string& constant) {
  return constant.compare(units) == 0;
}
