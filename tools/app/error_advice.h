// Error messages of qrconfig: what went wrong, and what to do about it.
#pragma once

#include <cstdint>
#include <exception>
#include <string>

namespace qrconfig {

// What an administrator or a developer can do about an error of `code`, as one or two
// sentences; a general advice for codes without one of their own.
std::string AdviceFor(std::int32_t code);

// The text of an exception of another class: POCO's displayText() for POCO exceptions (whose
// what() is only the class name), what() otherwise.
std::string ExceptionText(const std::exception& error);

}  // namespace qrconfig
