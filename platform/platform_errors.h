// The one place where failures of the C and POCO libraries under the platform layer become
// the library's codes: errno values of file access, Expat's error numbers, POCO's regular
// expression errors and iconv failures.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace PlatformErrors {

// How the bytes of an XML document are encoded, as far as the parser needs to know when it
// looks at the bytes where Expat stopped.
enum class XmlInputEncoding {
  Utf8,     // no declaration, or a declaration of UTF-8 (the default)
  Latin1,   // declared ISO-8859-1: every byte is a character
  Ascii,    // declared US-ASCII: bytes from 0x80 up are invalid
  Utf16BE,  // byte-order mark FE FF, or a document starting 00 3C
  Utf16LE,  // byte-order mark FF FE, or a document starting 3C 00
};

// The input where Expat reported its error: the bytes from the error position to the end
// of what the parser holds (may be empty when Expat keeps no context).
struct XmlErrorSite {
  const unsigned char* Bytes = nullptr;
  std::size_t Size = 0;
  XmlInputEncoding Encoding = XmlInputEncoding::Utf8;
};

// The parse code (QRErrorCode 46, 47 or 48) of an Expat error number (enum XML_Error):
//  - 47 for an unknown or incorrect encoding, a partial character at the end of the input,
//    and an invalid token whose bytes at `site` are not a valid character of the encoding
//    (for example 0xFF in a UTF-8 document, or an unpaired UTF-16 surrogate);
//  - 46 for every violation of the XML grammar (syntax, mismatched or unclosed tags,
//    undefined entities, bad character references, characters not allowed in XML such as NUL,
//    no root element);
//  - 48 for everything else Expat refuses: the entity amplification limit, external entity
//    handling, out of memory, and states the parser should never reach.
std::int32_t ParseCodeOfXmlError(int expatError, const XmlErrorSite& site);

// The parse code of a failure to open, inspect or read the file: always 45 (QRErrorCode::
// ParseCannotRead), whatever the errno value (missing, a directory, no permission, I/O error).
std::int32_t ParseCodeOfSystemError(int errorNumber);

// The system's text for an errno value, for diagnostics.
std::string SystemErrorText(int errorNumber);

// Throws QRError(3, 256, QRErrorCode::InvalidPattern, pattern): POCO refused to compile or
// to match the pattern. POCO's own text is not kept; the error names the pattern alone.
[[noreturn]] void ThrowPatternError(const std::string& pattern);

// Throws QRError(3, 256, QRErrorCode::CharSetConversion, charSetName) for any iconv failure:
// an unknown character set (iconv_open fails) or input that is invalid or truncated in it.
[[noreturn]] void ThrowCharSetError(const std::string& charSetName);

}  // namespace PlatformErrors
