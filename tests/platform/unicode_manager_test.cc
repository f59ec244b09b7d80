#include "qr_config/platform/unicode_manager.h"

#include <gtest/gtest.h>

#include <string>

#include "qr_config/platform/i18n_string.h"
#include "qr_config/platform/qr_error.h"

namespace {

// A conversion either gives the UTF-8 text, or fails with 284 naming the character set and
// leaves the output as it was.
TEST(UnicodeManagerTest, ConvertsToUtf8OrNamesTheCharacterSet) {
  std::string manyE;  // more output than the first buffer guess, the input size plus 16
  for (int i = 0; i < 40; ++i) manyE += "\xC3\xA9";
  const std::string failed = "(failed)";
  const std::string cases[][3] = {{"\xE9t\xE9", "ISO-8859-1", "\xC3\xA9t\xC3\xA9"},
                                  {"\x80", "CP1252", "\xE2\x82\xAC"},
                                  {"\xC3\xA9", "UTF-8", "\xC3\xA9"},
                                  {std::string("A\0\xAC\x20", 4), "UTF-16LE", "A\xE2\x82\xAC"},
                                  {"", "latin1", ""},
                                  {std::string(40, '\xE9'), "latin1", manyE},
                                  {"x", "no-such-set", failed},
                                  {"x", "UTF-8//IGNORE", failed},
                                  {"\xFF", "UTF-8", failed},
                                  {"a\xC3", "UTF-8", failed},
                                  {"\x81", "UTF-16LE", failed}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c[1]);
    orv_utf8string out("old");
    try {
      UnicodeManager::Instance().PlatformToUTF8(c[0], out, c[1]);
      EXPECT_EQ(c[2], out.str());
    } catch (const QRError& error) {
      EXPECT_EQ(c[2], failed);
      EXPECT_EQ(QRErrorCode::CharSetConversion, error.Code());
      EXPECT_EQ(c[1], error.Argument().str());
      EXPECT_EQ("old", out.str());
    }
  }
}

// UTF-8 and UTF-16 convert into each other at the bounds of every sequence length; bytes that
// are not well-formed UTF-8 (overlong, surrogate, beyond U+10FFFF, a bad lead byte) and
// unpaired surrogates each become U+FFFD.
TEST(I18nStringTest, ConvertsAtEveryBoundAndReplacesWhatIsNotWellFormed) {
  const std::string utf8 =
      "\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF\xF0\x90\x80\x80\xF4\x8F\xBF\xBF";
  const std::u16string utf16 = u"\x7F\x80\x7FF\x800\xFFFF\U00010000\U0010FFFF";
  const std::pair<std::string, std::u16string> cases[] = {
      {utf8, utf16},
      {"\xC1\xBF\xBF\xBF", u"\xFFFD\xFFFD\xFFFD\xFFFD"},
      {"\xE0\x9F\xBF\xED\xA0\x80\xED\xBF\xBF\303A", std::u16string(10, u'\xFFFD') + u'A'},
      {"\xF4\x90\x80\x80\xF5\xC3", u"\xFFFD\xFFFD\xFFFD\xFFFD\xFFFD\xFFFD"}};
  for (const auto& [bytes, units] : cases) {
    ucs2basic_string converted;
    AppendUtf8AsUtf16(bytes.data(), bytes.size(), converted);
    EXPECT_TRUE(converted == ucs2basic_string(units.begin(), units.end())) << bytes;
  }
  std::string back;
  const ucs2basic_string units(utf16.begin(), utf16.end());
  AppendUtf16AsUtf8(units.data(), units.size(), back);
  EXPECT_EQ(utf8, back);
  const ucs2char unpaired[] = {0xDC00, 0xDBFF, 'x', 0xD800};
  back.clear();
  AppendUtf16AsUtf8(unpaired, 4, back);
  EXPECT_EQ("\xEF\xBF\xBD\xEF\xBF\xBDx\xEF\xBF\xBD", back);
  EXPECT_TRUE(orv_utf8string(utf8) == orv_utf8string(std::string(utf8)));
  EXPECT_FALSE(orv_utf8string(utf8) == orv_utf8string(back));
}

}  // namespace
