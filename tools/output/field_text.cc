#include "output/field_text.h"

#include <cstdint>
#include <cstdio>

namespace qrconfig {

namespace {

std::string TextOf(const Field& field) {
  std::string text;
  if (field.ValueType() == Field::String) {
    field.Value(text);
  } else {
    orv_utf8string utf8;
    field.Value(utf8);
    text = utf8.str();
  }
  return text;
}

std::string Escaped(const std::string& text) {
  std::string out = "\"";
  for (char c : text) {
    switch (c) {
      case '"':
        out += "\\\"";
        break;
      case '\\':
        out += "\\\\";
        break;
      case '\n':
        out += "\\n";
        break;
      case '\r':
        out += "\\r";
        break;
      case '\t':
        out += "\\t";
        break;
      default:
        if (static_cast<unsigned char>(c) < 0x20 || c == 0x7f) {
          char escape[8];
          std::snprintf(escape, sizeof escape, "\\x%02x", static_cast<unsigned>(c));
          out += escape;
        } else {
          out += c;
        }
    }
  }
  return out + "\"";
}

}  // namespace

const char* TypeName(Field::ValueTag tag) {
  switch (tag) {
    case Field::String:
      return "String";
    case Field::UTF8String:
      return "UTF8String";
    case Field::Long:
      return "Long";
    case Field::Bool:
      return "Bool";
    case Field::None:
      break;
  }
  return "None";
}

std::string PlainValue(const Field& field) {
  switch (field.ValueType()) {
    case Field::String:
    case Field::UTF8String:
      return TextOf(field);
    case Field::Long: {
      std::int32_t value = 0;
      field.Value(value);
      return std::to_string(value);
    }
    case Field::Bool: {
      bool value = false;
      field.Value(value);
      return value ? "true" : "false";
    }
    case Field::None:
      break;
  }
  return "";
}

std::string DisplayValue(const Field& field) {
  if (field.ValueType() == Field::String || field.ValueType() == Field::UTF8String)
    return Escaped(TextOf(field));
  return PlainValue(field);
}

std::string FieldLine(const Field& field) {
  return field.Name() + ": " + TypeName(field.ValueType()) + " = " + DisplayValue(field);
}

void WriteFieldJson(JsonWriter& json, const Field& field) {
  json.BeginObject();
  json.Member("name", field.Name());
  json.Member("type", TypeName(field.ValueType()));
  json.Key("value");
  WriteFieldValueJson(json, field);
  json.EndObject();
}

void WriteFieldValueJson(JsonWriter& json, const Field& field) {
  switch (field.ValueType()) {
    case Field::String:
    case Field::UTF8String:
      json.String(TextOf(field));
      break;
    case Field::Long: {
      std::int32_t value = 0;
      field.Value(value);
      json.Integer(value);
      break;
    }
    case Field::Bool: {
      bool value = false;
      field.Value(value);
      json.Boolean(value);
      break;
    }
    case Field::None:
      json.Null();
      break;
  }
}

}  // namespace qrconfig
