// The JSON writer: layout, and strings that are always valid JSON text.
#include <gtest/gtest.h>

#include <sstream>

#include "output/json_writer.h"

namespace qrconfig {
namespace {

TEST(JsonWriterTest, QuotesEveryTextAsValidJson) {
  const std::pair<std::string, std::string> cases[] = {
      {"", "\"\""},
      {"plain", "\"plain\""},
      {"a\"b\\c/d", "\"a\\\"b\\\\c/d\""},
      {"\n\r\t\b\f", "\"\\n\\r\\t\\b\\f\""},
      {std::string("\x01\x1f\x00", 3), "\"\\u0001\\u001f\\u0000\""},
      {"\x7f", "\"\x7f\""},
      {"caf\xc3\xa9 \xe2\x82\xac \xf0\x9f\x98\x80",
       "\"caf\xc3\xa9 \xe2\x82\xac \xf0\x9f\x98\x80\""},
      {"\xff", "\"\xef\xbf\xbd\""},                                  // not a UTF-8 byte
      {"a\xc3", "\"a\xef\xbf\xbd\""},                                // truncated sequence
      {"\xc0\xaf", "\"\xef\xbf\xbd\xef\xbf\xbd\""},                  // overlong form
      {"\xed\xa0\x80", "\"\xef\xbf\xbd\xef\xbf\xbd\xef\xbf\xbd\""},  // a surrogate
  };
  for (const auto& [text, quoted] : cases) {
    SCOPED_TRACE(::testing::PrintToString(text));
    EXPECT_EQ(quoted, JsonWriter::Quote(text));
  }
}

TEST(JsonWriterTest, IndentsNestedContainersAndKeepsOrder) {
  std::ostringstream out;
  JsonWriter json(out);
  json.BeginObject();
  json.Member("z", "last first");
  json.Member("n", std::int64_t{-42});
  json.Key("list");
  json.BeginArray();
  json.Boolean(true);
  json.Null();
  json.BeginObject();
  json.EndObject();
  json.BeginArray();
  json.EndArray();
  json.EndArray();
  json.Member("a", false);
  json.EndObject();
  json.Finish();
  EXPECT_EQ(
      "{\n  \"z\": \"last first\",\n  \"n\": -42,\n  \"list\": [\n    true,\n    null,\n"
      "    {},\n    []\n  ],\n  \"a\": false\n}\n",
      out.str());
}

}  // namespace
}  // namespace qrconfig
