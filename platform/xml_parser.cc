#include "qr_config/platform/xml_parser.h"

#include <Poco/Path.h>

#include <cstdint>

namespace {

bool StartsWithEither(const std::string& text, char lower, char upper) {
  return !text.empty() && (text[0] == lower || text[0] == upper);
}

// Exact pre-checks: a text that fails one cannot match the corresponding pattern, so the
// matcher only runs on plausible texts.
bool MayBeFalse(const std::string& text) {
  return text.size() <= 5 && (StartsWithEither(text, 'f', 'F') || StartsWithEither(text, 'n', 'N'));
}
bool MayBeTrue(const std::string& text) {
  return text.size() <= 4 && (StartsWithEither(text, 't', 'T') || StartsWithEither(text, 'y', 'Y'));
}
bool MayBeInteger(const std::string& text) {
  if (text.empty()) return false;
  char first = text[0];
  return (first >= '0' && first <= '9') || first == '+' || first == '-' || first == '|';
}

// The value of a text the integer pattern matched; false when it does not fit 32 bits.
bool ToInt32(const std::string& text, std::int32_t& value) {
  std::size_t i = 0;
  bool negative = false;
  if (text[0] == '+' || text[0] == '-' || text[0] == '|') {
    negative = text[0] == '-';
    i = 1;
  }
  const std::int64_t limit = negative ? std::int64_t{INT32_MAX} + 1 : INT32_MAX;
  std::int64_t magnitude = 0;
  for (; i < text.size(); ++i) {
    magnitude = magnitude * 10 + (text[i] - '0');
    if (magnitude > limit) return false;
  }
  value = static_cast<std::int32_t>(negative ? -magnitude : magnitude);
  return true;
}

}  // namespace

XMLParser::XMLParser()
    : m_FalseMatcher("false|no?", RegularExpression::Matcher::kIgnoreCase),
      m_TrueMatcher("true|ye?s?", RegularExpression::Matcher::kIgnoreCase),
      m_IntegerMatcher("[+|-]?[0-9]+", 0) {}

XMLParser::~XMLParser() = default;

void XMLParser::Parse(const Poco::Path& file) {
  ParseFile(file.toString());
}

void XMLParser::ParseParameter(const std::string& text, bool& isBoolean, bool& booleanValue,
                               bool& isInteger, std::int32_t& integerValue) {
  if (MayBeFalse(text)) {
    m_FalseMatcher.reset(text);
    if (m_FalseMatcher.matches()) {
      isBoolean = true;
      booleanValue = false;
      return;
    }
  }
  if (MayBeTrue(text)) {
    m_TrueMatcher.reset(text);
    if (m_TrueMatcher.matches()) {
      isBoolean = true;
      booleanValue = true;
      return;
    }
  }
  if (MayBeInteger(text)) {
    m_IntegerMatcher.reset(text);
    std::int32_t value = 0;
    if (m_IntegerMatcher.matches() && ToInt32(text, value)) {
      isInteger = true;
      integerValue = value;
    }
  }
}
