#include "qr_config/platform/platform_errors.h"

#include <expat.h>

#include <system_error>

#include "qr_config/platform/qr_error.h"

namespace PlatformErrors {
namespace {

bool IsContinuation(unsigned char b) {
  return (b & 0xC0) == 0x80;
}

// True when `bytes` starts with one well-formed UTF-8 sequence of a scalar value (shortest
// form, no surrogate, at most U+10FFFF), complete within `size` bytes.
bool StartsWithValidUtf8(const unsigned char* bytes, std::size_t size) {
  if (size == 0) return true;
  unsigned char lead = bytes[0];
  if (lead < 0x80) return true;
  std::size_t length = 0;
  unsigned char low = 0x80, high = 0xBF;  // the allowed range of the second byte
  if (lead >= 0xC2 && lead <= 0xDF) {
    length = 2;
  } else if (lead >= 0xE0 && lead <= 0xEF) {
    length = 3;
    if (lead == 0xE0) low = 0xA0;
    if (lead == 0xED) high = 0x9F;
  } else if (lead >= 0xF0 && lead <= 0xF4) {
    length = 4;
    if (lead == 0xF0) low = 0x90;
    if (lead == 0xF4) high = 0x8F;
  } else {
    return false;
  }
  if (size < length || bytes[1] < low || bytes[1] > high) return false;
  for (std::size_t i = 2; i < length; ++i) {
    if (!IsContinuation(bytes[i])) return false;
  }
  return true;
}

// True when the code unit at the site is a surrogate without its partner.
bool StartsWithUnpairedSurrogate(const unsigned char* bytes, std::size_t size, bool bigEndian) {
  auto unit = [&](std::size_t i) -> unsigned {
    return bigEndian ? (bytes[i] << 8) | bytes[i + 1] : (bytes[i + 1] << 8) | bytes[i];
  };
  if (size < 2) return false;
  unsigned first = unit(0);
  if (first < 0xD800 || first > 0xDFFF) return false;
  if (first >= 0xDC00 || size < 4) return true;
  unsigned second = unit(2);
  return second < 0xDC00 || second > 0xDFFF;
}

bool HasInvalidBytes(const XmlErrorSite& site) {
  if (site.Bytes == nullptr) return false;
  switch (site.Encoding) {
    case XmlInputEncoding::Utf8:
      return !StartsWithValidUtf8(site.Bytes, site.Size);
    case XmlInputEncoding::Latin1:
      return false;
    case XmlInputEncoding::Ascii:
      return site.Size > 0 && site.Bytes[0] >= 0x80;
    case XmlInputEncoding::Utf16BE:
      return StartsWithUnpairedSurrogate(site.Bytes, site.Size, true);
    case XmlInputEncoding::Utf16LE:
      return StartsWithUnpairedSurrogate(site.Bytes, site.Size, false);
  }
  return false;
}

}  // namespace

std::int32_t ParseCodeOfXmlError(int expatError, const XmlErrorSite& site) {
  switch (static_cast<XML_Error>(expatError)) {
    case XML_ERROR_UNKNOWN_ENCODING:
    case XML_ERROR_INCORRECT_ENCODING:
    case XML_ERROR_PARTIAL_CHAR:
      return QRErrorCode::ParseEncoding;
    case XML_ERROR_INVALID_TOKEN:
      return HasInvalidBytes(site) ? QRErrorCode::ParseEncoding : QRErrorCode::ParseNotWellFormed;
    case XML_ERROR_SYNTAX:
    case XML_ERROR_NO_ELEMENTS:
    case XML_ERROR_UNCLOSED_TOKEN:
    case XML_ERROR_TAG_MISMATCH:
    case XML_ERROR_DUPLICATE_ATTRIBUTE:
    case XML_ERROR_JUNK_AFTER_DOC_ELEMENT:
    case XML_ERROR_PARAM_ENTITY_REF:
    case XML_ERROR_UNDEFINED_ENTITY:
    case XML_ERROR_RECURSIVE_ENTITY_REF:
    case XML_ERROR_ASYNC_ENTITY:
    case XML_ERROR_BAD_CHAR_REF:
    case XML_ERROR_BINARY_ENTITY_REF:
    case XML_ERROR_ATTRIBUTE_EXTERNAL_ENTITY_REF:
    case XML_ERROR_MISPLACED_XML_PI:
    case XML_ERROR_UNCLOSED_CDATA_SECTION:
    case XML_ERROR_ENTITY_DECLARED_IN_PE:
    case XML_ERROR_UNBOUND_PREFIX:
    case XML_ERROR_UNDECLARING_PREFIX:
    case XML_ERROR_INCOMPLETE_PE:
    case XML_ERROR_XML_DECL:
    case XML_ERROR_TEXT_DECL:
    case XML_ERROR_PUBLICID:
    case XML_ERROR_RESERVED_PREFIX_XML:
    case XML_ERROR_RESERVED_PREFIX_XMLNS:
    case XML_ERROR_RESERVED_NAMESPACE_URI:
      return QRErrorCode::ParseNotWellFormed;
    default:
      return QRErrorCode::ParseRefused;
  }
}

std::int32_t ParseCodeOfSystemError(int /*errorNumber*/) {
  return QRErrorCode::ParseCannotRead;
}

std::string SystemErrorText(int errorNumber) {
  return std::system_category().message(errorNumber);
}

void ThrowPatternError(const std::string& pattern) {
  ThrowQRError(QRErrorCode::InvalidPattern, pattern);
}

void ThrowCharSetError(const std::string& charSetName) {
  ThrowQRError(QRErrorCode::CharSetConversion, charSetName);
}

}  // namespace PlatformErrors
