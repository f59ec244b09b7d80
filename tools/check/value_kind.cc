#include "check/value_kind.h"

#include <cstdint>

#include "output/field_text.h"
#include "qr_config/platform/xml_parser.h"

namespace qrconfig {

ValueTag ClassifyValue(const std::string& text, std::string* canonical) {
  static XMLParser parser;
  bool isBoolean = false;
  bool booleanValue = false;
  bool isInteger = false;
  std::int32_t integerValue = 0;
  parser.ParseParameter(text, isBoolean, booleanValue, isInteger, integerValue);
  if (isBoolean) {
    if (canonical != nullptr) *canonical = booleanValue ? "true" : "false";
    return ConfigManagerTypes::Field::Bool;
  }
  if (isInteger) {
    if (canonical != nullptr) *canonical = std::to_string(integerValue);
    return ConfigManagerTypes::Field::Long;
  }
  if (canonical != nullptr) *canonical = text;
  return ConfigManagerTypes::Field::String;
}

const char* TagName(ValueTag tag) {
  return TypeName(tag);
}

}  // namespace qrconfig
