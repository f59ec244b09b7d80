// How qrconfig shows a field: its type name and its value, for people, scripts and JSON.
#pragma once

#include <string>

#include "output/json_writer.h"
#include "qr_config/config/model/field.h"

namespace qrconfig {

using Field = ConfigManagerTypes::Field;

// "None", "String", "UTF8String", "Long" or "Bool".
const char* TypeName(Field::ValueTag tag);

// The value as a script wants it: a text as it is (no quotes, no escapes), a Long in decimal,
// a Bool as "true" or "false", None as the empty text.
std::string PlainValue(const Field& field);

// The value for people: texts in double quotes with quotes, backslashes and control
// characters escaped C-style (\", \\, \n, \t, \x01), so that empty texts, surrounding blanks
// and line breaks show; other kinds as PlainValue.
std::string DisplayValue(const Field& field);

// One line for a field: "<name>: <type> = <display value>".
std::string FieldLine(const Field& field);

// The field as a JSON object {"name", "type", "value"}; the value is a string, a number, a
// boolean, or null for None.
void WriteFieldJson(JsonWriter& json, const Field& field);
// The value alone, as WriteFieldJson writes it.
void WriteFieldValueJson(JsonWriter& json, const Field& field);

}  // namespace qrconfig
