// The type a reader gives a value text.
#pragma once

#include <string>

#include "qr_config/config/model/field.h"

namespace qrconfig {

using ValueTag = ConfigManagerTypes::Field::ValueTag;

// Bool, Long or String: the type the main-file and data-access readers give a field whose
// text is `text` (XMLParser::ParseParameter: false/n/no and true/y/ye/yes/ys in any letter
// case are Bool; an optional sign or '|' and decimal digits that fit 32 bits are Long; all
// else is String). With `canonical`, also stores the value as the field shows it: "true" or
// "false", the integer in decimal ("0042" gives "42"), or the text itself. Uses one parser
// kept for the process: not for concurrent use.
ValueTag ClassifyValue(const std::string& text, std::string* canonical = nullptr);

// "Bool", "Long", "String", ...; a shorthand for TypeName.
const char* TagName(ValueTag tag);

}  // namespace qrconfig
