// Small text helpers of the diagnostics the readers and the start-up compose. Internal.
#pragma once

#include <string>

#include "qr_config/config/model/field.h"

namespace DiagnosticText {

// `text` in double quotes, as messages quote names and values.
std::string Quoted(const std::string& text);

// "boolean", "integer" or "text" for the tags a file can give a value; "value of another
// kind" for the others.
const char* TypeName(ConfigManagerTypes::Field::ValueTag tag);
// The same with its indefinite article: "a boolean", "an integer", "a text".
std::string TypeNameWithArticle(ConfigManagerTypes::Field::ValueTag tag);

}  // namespace DiagnosticText
