#include "output/json_writer.h"

#include <cassert>
#include <cstdio>

#include "qr_config/platform/i18n_string.h"

namespace qrconfig {

void JsonWriter::BeginObject() {
  Open('{', true);
}
void JsonWriter::EndObject() {
  Close('}', true);
}
void JsonWriter::BeginArray() {
  Open('[', false);
}
void JsonWriter::EndArray() {
  Close(']', false);
}

void JsonWriter::Key(const std::string& key) {
  assert(!m_Levels.empty() && m_Levels.back().IsObject && !m_AfterKey);
  Level& level = m_Levels.back();
  if (!level.Empty) m_Out << ',';
  level.Empty = false;
  NewLine(m_Levels.size());
  m_Out << Quote(key) << ": ";
  m_AfterKey = true;
}

void JsonWriter::String(const std::string& text) {
  BeforeValue();
  m_Out << Quote(text);
}

void JsonWriter::Integer(std::int64_t value) {
  BeforeValue();
  m_Out << value;
}

void JsonWriter::Boolean(bool value) {
  BeforeValue();
  m_Out << (value ? "true" : "false");
}

void JsonWriter::Null() {
  BeforeValue();
  m_Out << "null";
}

void JsonWriter::Finish() {
  assert(m_Levels.empty());
  m_Out << '\n';
}

void JsonWriter::BeforeValue() {
  if (m_Levels.empty()) return;
  Level& level = m_Levels.back();
  if (level.IsObject) {
    assert(m_AfterKey);
    m_AfterKey = false;
    return;
  }
  if (!level.Empty) m_Out << ',';
  level.Empty = false;
  NewLine(m_Levels.size());
}

void JsonWriter::Open(char bracket, bool isObject) {
  BeforeValue();
  m_Out << bracket;
  m_Levels.push_back({isObject, true});
}

void JsonWriter::Close(char bracket, bool isObject) {
  assert(!m_Levels.empty() && m_Levels.back().IsObject == isObject && !m_AfterKey);
  (void)isObject;
  const bool empty = m_Levels.back().Empty;
  m_Levels.pop_back();
  if (!empty) NewLine(m_Levels.size());
  m_Out << bracket;
}

void JsonWriter::NewLine(std::size_t depth) {
  m_Out << '\n';
  for (std::size_t i = 0; i < depth && i < kMaxIndentLevels; ++i) m_Out << "  ";
}

std::string JsonWriter::Quote(const std::string& text) {
  // The round trip through UTF-16 replaces every invalid byte by U+FFFD.
  ucs2basic_string units;
  AppendUtf8AsUtf16(text.data(), text.size(), units);
  std::string valid;
  AppendUtf16AsUtf8(units.data(), units.size(), valid);

  std::string quoted = "\"";
  for (char c : valid) {
    switch (c) {
      case '"':
        quoted += "\\\"";
        break;
      case '\\':
        quoted += "\\\\";
        break;
      case '\b':
        quoted += "\\b";
        break;
      case '\f':
        quoted += "\\f";
        break;
      case '\n':
        quoted += "\\n";
        break;
      case '\r':
        quoted += "\\r";
        break;
      case '\t':
        quoted += "\\t";
        break;
      default:
        if (static_cast<unsigned char>(c) < 0x20) {
          char escape[8];
          std::snprintf(escape, sizeof escape, "\\u%04x", static_cast<unsigned>(c));
          quoted += escape;
        } else {
          quoted += c;
        }
    }
  }
  quoted += '"';
  return quoted;
}

}  // namespace qrconfig
