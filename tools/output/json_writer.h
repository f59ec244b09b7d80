// JsonWriter: JSON output of qrconfig, written as it is built.
#pragma once

#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

namespace qrconfig {

// Writes one JSON document to a stream in the order of the calls: members appear in the order
// they are written, which is the order of the configuration. Nothing is kept beyond the open
// containers, so a document of any size or depth costs no memory or stack of its own (callers
// walk trees iteratively for the same reason).
//
// Output is indented by two spaces per level, up to kMaxIndentLevels levels: deeper levels
// keep that indentation, so that a deeply nested document stays linear in size. An empty
// container is written "[]" or "{}".
// Every text is written as valid UTF-8 JSON: quotes, backslashes and control characters are
// escaped, and each byte that does not start a valid UTF-8 sequence becomes U+FFFD (the
// platform's conversion rules, platform/i18n_string.h).
//
// Usage errors (a value without a key inside an object, an End without a Begin) are
// programming errors; they are caught by assertions only.
class JsonWriter {
 public:
  static constexpr std::size_t kMaxIndentLevels = 64;

  explicit JsonWriter(std::ostream& out) : m_Out(out) {}
  JsonWriter(const JsonWriter&) = delete;
  JsonWriter& operator=(const JsonWriter&) = delete;

  void BeginObject();
  void EndObject();
  void BeginArray();
  void EndArray();
  // The key of the next value; only inside an object.
  void Key(const std::string& key);
  void String(const std::string& text);
  void Integer(std::int64_t value);
  void Boolean(bool value);
  void Null();

  // Key followed by a value.
  void Member(const std::string& key, const std::string& text) { Key(key), String(text); }
  void Member(const std::string& key, const char* text) { Key(key), String(text); }
  void Member(const std::string& key, std::int64_t value) { Key(key), Integer(value); }
  void Member(const std::string& key, bool value) { Key(key), Boolean(value); }

  // Ends the document with a line feed; all containers must be closed.
  void Finish();

  // `text` as a JSON string literal, quotes included.
  static std::string Quote(const std::string& text);

 private:
  struct Level {
    bool IsObject;
    bool Empty;
  };

  void BeforeValue();
  void Open(char bracket, bool isObject);
  void Close(char bracket, bool isObject);
  void NewLine(std::size_t depth);

  std::ostream& m_Out;
  std::vector<Level> m_Levels;
  bool m_AfterKey = false;
};

}  // namespace qrconfig
