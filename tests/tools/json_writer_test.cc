// The JSON writer's strings are always valid JSON text; its layout is checked on the
// commands' output (commands_test.cc).
#include <gtest/gtest.h>

#include "output/json_writer.h"

namespace qrconfig {
namespace {

TEST(JsonWriterTest, QuotesEveryTextAsValidJson) {
  const std::pair<std::string, std::string> cases[] = {
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

}  // namespace
}  // namespace qrconfig
