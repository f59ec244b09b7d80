// Failure: one failure of qrconfig, written for people or as JSON.
#pragma once

#include <cstdint>
#include <exception>
#include <optional>
#include <ostream>
#include <string>

#include "qr_config/platform/qr_error.h"

namespace qrconfig {

struct Failure {
  int Status = 1;                    // the exit status it leads to
  std::string Kind;                  // usage, directory, load, lookup, output or internal
  std::optional<std::int32_t> Code;  // the QRError code, when the library raised it
  std::string Message;               // what went wrong: one sentence without its full stop
  std::string Advice;                // what to do, as sentences; may be empty
  std::string File;                  // the file or directory concerned; may be empty

  // A usage error (status 2): the message, and the advice to read the help.
  static Failure Usage(const std::string& message);
  // A QRError of `kind`: what() as the message, with `context` before it (may be empty) and
  // `suggestion` after it as "(did you mean "X"?)" when not empty, AdviceFor its code, and
  // the error's argument as File for the codes whose argument is a file.
  static Failure Of(const QRError& error, const std::string& kind, const std::string& context,
                    const std::string& suggestion = "");
  // An exception of another class (ExceptionText), with a general advice.
  static Failure Of(const std::exception& error, const std::string& kind,
                    const std::string& context);
};

// For people, on `err`: "qrconfig: MESSAGE. ADVICE" on one line (the advice of a usage
// error on a line of its own). As JSON, on `out`, one document:
//   {"error": {"status", "kind", "code" (null unless a QRError), "message", "advice",
//              "file" (null when none)}}
// so that a script reads every result and every failure from standard output alone.
void WriteFailure(const Failure& failure, bool asJson, std::ostream& out, std::ostream& err);

}  // namespace qrconfig
