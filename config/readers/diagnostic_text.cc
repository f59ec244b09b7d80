#include "qr_config/config/readers/diagnostic_text.h"

namespace DiagnosticText {

std::string Quoted(const std::string& text) {
  return "\"" + text + "\"";
}

const char* TypeName(ConfigManagerTypes::Field::ValueTag tag) {
  switch (tag) {
    case ConfigManagerTypes::Field::Bool:
      return "boolean";
    case ConfigManagerTypes::Field::Long:
      return "integer";
    case ConfigManagerTypes::Field::String:
      return "text";
    default:
      return "value of another kind";
  }
}

std::string TypeNameWithArticle(ConfigManagerTypes::Field::ValueTag tag) {
  const std::string name = TypeName(tag);
  return (name[0] == 'i' ? "an " : "a ") + name;
}

}  // namespace DiagnosticText
