#include "qr_config/platform/qr_error.h"

namespace {

struct Meaning {
  std::int32_t code;
  const char* withArgument;     // followed by the argument in quotes
  const char* withoutArgument;  // a whole phrase
};

// One row per code: the catalogue that what() and the documentation draw on.
constexpr Meaning kCatalogue[] = {
    {1, "value type mismatch for", "the requested type differs from the field's value type"},
    {4, "empty node path", "the node path has no levels"},
    {5, "no node at path", "no node at that path"},
    {10, "configuration not loaded",
     "the configuration could not be loaded (an error other than a file error ended the start-up)"},
    {13, "no database named", "no database of that name or alias"},
    {22, "no driver named", "no driver of that name or alias"},
    {45, "cannot open or read", "cannot open or read the file"},
    {46, "not well-formed XML in", "the document is not well-formed XML"},
    {47, "encoding problem in", "the document has an encoding problem"},
    {48, "the XML parser refused", "the XML parser refused the document"},
    {50, "localised driver node missing",
     "the localised driver node is missing after its file was loaded"},
    {259, "already initialised", "the configuration is already initialised"},
    {260, "not initialised", "the configuration is not initialised"},
    {261, "no field named", "a required field, section or parameter is missing"},
    {262, "no character-set table for driver",
     "no character-set table for that driver and database"},
    {263, "no character-set entry named", "no character-set entry of that name"},
    {264, "cannot open or read the file", "cannot open or read a configuration file"},
    {265, "not well-formed XML in the file", "a configuration file is not well-formed XML"},
    {266, "encoding problem in the file", "a configuration file has an encoding problem"},
    {267, "the XML parser refused the file",
     "the main configuration file closes an element that was never opened"},
    {268, "no locale table for platform", "no locale table for that platform"},
    {270, "unknown locale", "neither the locale nor its language is known"},
    {279, "cannot open or read the data-access file", "cannot open or read a data-access file"},
    {280, "not well-formed XML in the data-access file",
     "a data-access file is not well-formed XML"},
    {281, "encoding problem in the data-access file", "a data-access file has an encoding problem"},
    {282, "the XML parser refused the data-access file",
     "the XML parser refused a data-access file"},
    {283, "regular expression refused (does not compile, or its match gave up)",
     "a regular expression does not compile, or its match gave up"},
    {284, "cannot convert from the character set", "cannot convert the text to UTF-8"},
};

}  // namespace

const char* QRErrorMeaning(std::int32_t code, bool withArgument) {
  for (const Meaning& m : kCatalogue) {
    if (m.code == code) return withArgument ? m.withArgument : m.withoutArgument;
  }
  return "unknown error";
}

QRError::QRError(std::int32_t component, std::uint16_t level, std::int32_t code)
    : Quorin::QRError(component, level, code) {
  Compose();
}

QRError::QRError(std::int32_t component, std::uint16_t level, std::int32_t code,
                 const orv_utf8string& argument)
    : Quorin::QRError(component, level, code, argument) {
  Compose();
}

QRError::~QRError() = default;

const char* QRError::TypeName() const noexcept {
  return "QRError";
}

std::unique_ptr<Quorin::Error> QRError::Clone() const {
  return std::make_unique<QRError>(*this);
}

void QRError::Raise() const {
  throw *this;
}

std::string QRError::Describe() const {
  if (Argument().empty()) return QRErrorMeaning(Code(), false);
  return std::string(QRErrorMeaning(Code(), true)) + " \"" + Argument().str() + "\"";
}

void ThrowQRError(std::int32_t code) {
  throw QRError(3, 256, code);
}

void ThrowQRError(std::int32_t code, const std::string& argument) {
  throw QRError(3, 256, code, orv_utf8string(argument));
}
