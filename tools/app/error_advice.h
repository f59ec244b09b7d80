// Error messages of qrconfig: what went wrong, and what to do about it.
#pragma once

#include <cstdint>
#include <exception>
#include <string>

#include "qr_config/platform/qr_error.h"

namespace qrconfig {

// What an administrator or a developer can do about an error of `code`, as one or two
// sentences; a general advice for codes without one of their own.
std::string AdviceFor(std::int32_t code);

// The error as one message: the error's own text (QRError::what(): the code, its meaning and
// the name or file involved), a full stop, and AdviceFor its code. For example:
//   QRError 22: no driver named "CRVX". List the drivers and their aliases with
//   'qrconfig drivers'; names are case-sensitive.
std::string ErrorSentence(const QRError& error);

// The text of an exception of another class: POCO's displayText() for POCO exceptions (whose
// what() is only the class name), what() otherwise.
std::string ExceptionText(const std::exception& error);

// The same for an exception of another class (POCO's displayText() for POCO exceptions,
// what() otherwise) with a general advice.
std::string ErrorSentence(const std::exception& error);

}  // namespace qrconfig
