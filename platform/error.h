// The core error classes under the library's one exception type.
//
// Quorin::Error is the root of the chain and a std::exception, so what() always gives a
// readable sentence. Quorin::QRError is the numbered error of the middleware; the library
// itself throws only ::QRError (platform/qr_error.h), which derives from it. All three
// levels can be caught.
#pragma once

#include <cstdint>
#include <exception>
#include <memory>
#include <string>

#include "qr_config/platform/i18n_string.h"
#include "qr_config/platform/qr_export.h"

namespace Quorin {

// Root of the error chain. Holds the error record and the sentence that what() returns.
// Copying an error copies its texts; errors are thrown by value and caught by reference.
class QR_API Error : public std::exception {
 public:
  ~Error() override;

  // The readable sentence: "<TypeName> <code>: <meaning and argument>".
  const char* what() const noexcept override { return m_What.c_str(); }

  // The name of the most derived error class, for example "QRError".
  virtual const char* TypeName() const noexcept;
  // The same sentence as what(), as a string.
  virtual std::string Message() const;
  // A heap copy of the most derived object.
  virtual std::unique_ptr<Error> Clone() const;
  // Throws a copy of the most derived object.
  [[noreturn]] virtual void Raise() const;

 protected:
  Error() = default;
  Error(const Error&) = default;
  Error& operator=(const Error&) = default;

  // Derived classes compose the sentence once, when the error is made.
  void SetWhat(std::string what) { m_What = std::move(what); }

 private:
  std::string m_What;
};

// The numbered error of the middleware: the record every QRError carries.
class QR_API QRError : public Error {
 public:
  // component: the first constructor value (3 everywhere in this library);
  // level: the 16-bit value (256 at every raise that leaves the library).
  QRError(std::int32_t component, std::uint16_t level, std::int32_t code);
  QRError(std::int32_t component, std::uint16_t level, std::int32_t code,
          const orv_utf8string& argument);
  ~QRError() override;

  // The value fixed for this class of error: always 3.
  std::int32_t ErrorClass() const noexcept { return m_ErrorClass; }
  std::int32_t Component() const noexcept { return m_Component; }
  std::int32_t Code() const noexcept { return m_Code; }
  std::uint16_t Level() const noexcept { return m_Level; }
  // The offending name or path; empty (never missing) when the error has none.
  const orv_utf8string& Argument() const noexcept { return m_Argument; }
  // The second text of the record; always empty in this library.
  const orv_utf8string& Detail() const noexcept { return m_Detail; }

  const char* TypeName() const noexcept override;
  std::unique_ptr<Error> Clone() const override;
  [[noreturn]] void Raise() const override;

 protected:
  // Lets a derived class describe its codes in its own words.
  virtual std::string Describe() const;
  void Compose() {
    SetWhat(std::string(TypeName()) + " " + std::to_string(m_Code) + ": " + Describe());
  }

 private:
  std::int32_t m_ErrorClass = 3;
  std::int32_t m_Component;
  std::int32_t m_Code;
  std::uint16_t m_Level;
  orv_utf8string m_Argument;
  orv_utf8string m_Detail;
};

}  // namespace Quorin
