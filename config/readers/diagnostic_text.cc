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

bool EqualIgnoringCase(const std::string& a, const std::string& b) {
  if (a.size() != b.size()) return false;
  const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; };
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (lower(a[i]) != lower(b[i])) return false;
  }
  return true;
}

}  // namespace DiagnosticText
