#include "qr_config/platform/error.h"

namespace Quorin {

Error::~Error() = default;

const char* Error::TypeName() const noexcept {
  return "Error";
}

std::string Error::Message() const {
  return m_What;
}

std::unique_ptr<Error> Error::Clone() const {
  return std::unique_ptr<Error>(new Error(*this));
}

void Error::Raise() const {
  throw *this;
}

QRError::QRError(std::int32_t component, std::uint16_t level, std::int32_t code)
    : m_Component(component), m_Code(code), m_Level(level) {
  Compose();
}

QRError::QRError(std::int32_t component, std::uint16_t level, std::int32_t code,
                 const orv_utf8string& argument)
    : m_Component(component), m_Code(code), m_Level(level), m_Argument(argument) {
  Compose();
}

QRError::~QRError() = default;

const char* QRError::TypeName() const noexcept {
  return "Quorin::QRError";
}

std::unique_ptr<Error> QRError::Clone() const {
  return std::make_unique<QRError>(*this);
}

void QRError::Raise() const {
  throw *this;
}

std::string QRError::Describe() const {
  if (m_Argument.empty()) return "error";
  return "error (\"" + m_Argument.str() + "\")";
}

}  // namespace Quorin
