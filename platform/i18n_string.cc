#include "qr_config/platform/i18n_string.h"

namespace {

constexpr char32_t kReplacement = 0xFFFD;

void AppendScalarUtf8(char32_t c, std::string& out) {
  if (c < 0x80) {
    out.push_back(static_cast<char>(c));
  } else if (c < 0x800) {
    out.push_back(static_cast<char>(0xC0 | (c >> 6)));
    out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
  } else if (c < 0x10000) {
    out.push_back(static_cast<char>(0xE0 | (c >> 12)));
    out.push_back(static_cast<char>(0x80 | ((c >> 6) & 0x3F)));
    out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
  } else {
    out.push_back(static_cast<char>(0xF0 | (c >> 18)));
    out.push_back(static_cast<char>(0x80 | ((c >> 12) & 0x3F)));
    out.push_back(static_cast<char>(0x80 | ((c >> 6) & 0x3F)));
    out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
  }
}

bool IsHighSurrogate(char32_t u) {
  return u >= 0xD800 && u <= 0xDBFF;
}
bool IsLowSurrogate(char32_t u) {
  return u >= 0xDC00 && u <= 0xDFFF;
}

}  // namespace

void AppendUtf16AsUtf8(const ucs2char* units, std::size_t count, std::string& out) {
  // ASCII runs dominate configuration files: each run is copied in one piece.
  std::size_t i = 0;
  while (i < count) {
    std::size_t end = i;
    while (end < count && units[end] < 0x80) ++end;
    if (end != i) {
      const std::size_t at = out.size();
      out.resize(at + (end - i));
      char* target = &out[at];
      for (; i < end; ++i) *target++ = static_cast<char>(units[i]);
      if (i == count) return;
    }
    char32_t u = units[i];
    if (IsHighSurrogate(u) && i + 1 < count && IsLowSurrogate(units[i + 1])) {
      char32_t c = 0x10000 + ((u - 0xD800) << 10) + (units[i + 1] - 0xDC00);
      AppendScalarUtf8(c, out);
      i += 2;
      continue;
    }
    AppendScalarUtf8(IsHighSurrogate(u) || IsLowSurrogate(u) ? kReplacement : u, out);
    ++i;
  }
}

void AppendUtf8AsUtf16(const char* bytes, std::size_t count, ucs2basic_string& out) {
  const auto* s = reinterpret_cast<const unsigned char*>(bytes);
  std::size_t i = 0;
  while (i < count) {
    unsigned char b = s[i];
    if (b < 0x80) {
      out.push_back(b);
      ++i;
      continue;
    }
    std::size_t length = 0;
    char32_t c = 0;
    char32_t minimum = 0;
    if (b >= 0xC2 && b <= 0xDF) {
      length = 2, c = b & 0x1F, minimum = 0x80;
    } else if (b >= 0xE0 && b <= 0xEF) {
      length = 3, c = b & 0x0F, minimum = 0x800;
    } else if (b >= 0xF0 && b <= 0xF4) {
      length = 4, c = b & 0x07, minimum = 0x10000;
    }
    bool valid = length != 0 && i + length <= count;
    for (std::size_t k = 1; valid && k < length; ++k) {
      if ((s[i + k] & 0xC0) != 0x80)
        valid = false;
      else
        c = (c << 6) | (s[i + k] & 0x3F);
    }
    if (valid && (c < minimum || c > 0x10FFFF || (c >= 0xD800 && c <= 0xDFFF))) valid = false;
    if (!valid) {
      out.push_back(static_cast<ucs2char>(kReplacement));
      ++i;
      continue;
    }
    if (c >= 0x10000) {
      c -= 0x10000;
      out.push_back(static_cast<ucs2char>(0xD800 + (c >> 10)));
      out.push_back(static_cast<ucs2char>(0xDC00 + (c & 0x3FF)));
    } else {
      out.push_back(static_cast<ucs2char>(c));
    }
    i += length;
  }
}

orv_utf8string::orv_utf8string(const ucs2string& text) {
  AppendUtf16AsUtf8(text.data(), text.size(), m_Bytes);
}

ucs2string::ucs2string(const orv_utf8string& text) {
  AppendUtf8AsUtf16(text.data(), text.size(), m_Units);
}

int ucs2string::compare(const ucs2char* units) const noexcept {
  static const ucs2char kEmpty = 0;
  const ucs2char* p = units ? units : &kEmpty;
  std::size_t i = 0;
  for (; i < m_Units.size(); ++i) {
    if (p[i] == 0) return 1;
    if (p[i] != m_Units[i]) return m_Units[i] < p[i] ? -1 : 1;
  }
  return p[i] == 0 ? 0 : -1;
}
