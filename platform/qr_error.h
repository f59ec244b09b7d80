// QRError, the one exception class of the library, and the catalogue of its codes.
//
// Every failure that leaves the library is a QRError thrown by value. Catch it as QRError,
// Quorin::QRError or Quorin::Error (a std::exception): what() reads like
//   QRError 261: no field named "Port"
// that is the code, its meaning in words and the argument when there is one.
#pragma once

#include <cstdint>

#include "qr_config/platform/error.h"

// Named constants for every code the library raises. The comment gives the argument.
namespace QRErrorCode {
inline constexpr std::int32_t TypeMismatch = 1;      // none
inline constexpr std::int32_t EmptyNodePath = 4;     // none
inline constexpr std::int32_t NodeNotFound = 5;      // the path text
inline constexpr std::int32_t StartupFailed = 10;    // none
inline constexpr std::int32_t UnknownDatabase = 13;  // the name looked up
inline constexpr std::int32_t UnknownDriver = 22;    // the driver name looked up
// Parse codes of the XML layer; readers translate them into file codes before they leave.
inline constexpr std::int32_t ParseCannotRead = 45;         // the file's path
inline constexpr std::int32_t ParseNotWellFormed = 46;      // the file's path
inline constexpr std::int32_t ParseEncoding = 47;           // the file's path
inline constexpr std::int32_t ParseRefused = 48;            // the file's path
inline constexpr std::int32_t LocalizedNodeMissing = 50;    // none
inline constexpr std::int32_t AlreadyInitialized = 259;     // none
inline constexpr std::int32_t NotInitialized = 260;         // none
inline constexpr std::int32_t MissingField = 261;           // the field name, or none
inline constexpr std::int32_t NoCharSetTable = 262;         // the driver name
inline constexpr std::int32_t NoCharSetEntry = 263;         // the name looked up
inline constexpr std::int32_t FileCannotRead = 264;         // the file's path
inline constexpr std::int32_t FileNotWellFormed = 265;      // the file's path
inline constexpr std::int32_t FileEncoding = 266;           // the file's path
inline constexpr std::int32_t FileRefused = 267;            // the file's path, or none
inline constexpr std::int32_t UnknownPlatform = 268;        // the platform name
inline constexpr std::int32_t UnknownLocale = 270;          // the locale identifier
inline constexpr std::int32_t DataFileCannotRead = 279;     // the file's path
inline constexpr std::int32_t DataFileNotWellFormed = 280;  // the file's path
inline constexpr std::int32_t DataFileEncoding = 281;       // the file's path
inline constexpr std::int32_t DataFileRefused = 282;        // the file's path
// Codes of the platform layer. During start-up they become StartupFailed like any other
// code outside 264 to 267.
inline constexpr std::int32_t InvalidPattern = 283;     // the pattern (no compile, or gave up)
inline constexpr std::int32_t CharSetConversion = 284;  // the character-set name
}  // namespace QRErrorCode

// The meaning of a code in words, for messages: for example "no field named" for 261.
// Unknown codes give "unknown error".
QR_API const char* QRErrorMeaning(std::int32_t code, bool withArgument);

// The library's exception. It adds no member of its own to the Quorin::QRError record:
// the values 3 and 256, the code, the argument text and an empty second text.
class QR_API QRError : public Quorin::QRError {
 public:
  QRError(std::int32_t component, std::uint16_t level, std::int32_t code);
  QRError(std::int32_t component, std::uint16_t level, std::int32_t code,
          const orv_utf8string& argument);
  QRError(const QRError&) = default;
  QRError& operator=(const QRError&) = default;
  ~QRError() override;

  const char* TypeName() const noexcept override;
  std::unique_ptr<Quorin::Error> Clone() const override;
  [[noreturn]] void Raise() const override;

 protected:
  std::string Describe() const override;
};

// Shorthands for the two forms every raise in the library uses: (3, 256, code[, argument]).
[[noreturn]] QR_API void ThrowQRError(std::int32_t code);
[[noreturn]] QR_API void ThrowQRError(std::int32_t code, const std::string& argument);
