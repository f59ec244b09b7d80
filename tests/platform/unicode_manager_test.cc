#include "qr_config/platform/unicode_manager.h"

#include <gtest/gtest.h>

#include <string>

#include "qr_config/platform/qr_error.h"

namespace {

TEST(UnicodeManagerTest, ConvertsToUtf8) {
  std::string manyE;  // more output than the first buffer guess, the input size plus 16
  for (int i = 0; i < 40; ++i) manyE += "\xC3\xA9";
  const std::string cases[][3] = {{"\xE9t\xE9", "ISO-8859-1", "\xC3\xA9t\xC3\xA9"},
                                  {"\x80", "CP1252", "\xE2\x82\xAC"},
                                  {"\xC3\xA9", "UTF-8", "\xC3\xA9"},
                                  {std::string("A\0\xAC\x20", 4), "UTF-16LE", "A\xE2\x82\xAC"},
                                  {"", "latin1", ""},
                                  {std::string(40, '\xE9'), "latin1", manyE}};
  for (const auto& c : cases) {
    orv_utf8string out("old");
    UnicodeManager::Instance().PlatformToUTF8(c[0], out, c[1]);
    EXPECT_EQ(c[2], out.str()) << c[1];
  }
}

TEST(UnicodeManagerTest, FailuresNameTheCharacterSetAndKeepTheOutput) {
  const std::string cases[][2] = {{"x", "no-such-set"},
                                  {"x", "UTF-8//IGNORE"},
                                  {"\xFF", "UTF-8"},
                                  {"a\xC3", "UTF-8"},
                                  {"\x81", "UTF-16LE"}};
  for (const auto& c : cases) {
    orv_utf8string out("old");
    try {
      UnicodeManager::Instance().PlatformToUTF8(c[0], out, c[1]);
      ADD_FAILURE() << c[1];
    } catch (const QRError& error) {
      EXPECT_EQ(QRErrorCode::CharSetConversion, error.Code()) << c[1];
      EXPECT_EQ(c[1], error.Argument().str());
      EXPECT_EQ("old", out.str());
    }
  }
}

}  // namespace
