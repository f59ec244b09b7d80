#include "qr_config/platform/xml_parser.h"

#include <gtest/gtest.h>

#include <string>

namespace {

class Classifier : public XMLParser {
 public:
  // "false", "true", the integer's value, or "text".
  std::string Classify(const std::string& text) {
    bool isBoolean = false, booleanValue = false, isInteger = false;
    std::int32_t integerValue = 0;
    ParseParameter(text, isBoolean, booleanValue, isInteger, integerValue);
    if (isBoolean) return booleanValue ? "true" : "false";
    return isInteger ? std::to_string(integerValue) : "text";
  }
};

// The first letter and the length of each case's text decide whether the matcher runs at all:
// lower and upper case, the longest words and both ends of the digits.
TEST(XMLParserTest, ParseParameterClassifiesWholeTexts) {
  // clang-format off
  const char* cases[][2] = {
      {"false", "false"}, {"FALSE", "false"}, {"No", "false"}, {"no", "false"}, {"NO", "false"},
      {"N", "false"}, {"Yes", "true"}, {"Y", "true"}, {"yes", "true"}, {"ys", "true"},
      {"True", "true"}, {"true", "true"}, {"ye", "true"}, {"1", "1"}, {"9", "9"}, {"-0", "0"},
      {"+7", "7"}, {"0042", "42"}, {"|5", "5"}, {"2147483647", "2147483647"},
      {"-2147483648", "-2147483648"}, {"0000000000002147483647", "2147483647"},
      {"2147483648", "text"}, {"-2147483649", "text"}, {"99999999999999999999", "text"},
      {"", "text"}, {" yes", "text"}, {" 5", "text"}, {"yes ", "text"}, {"1.5", "text"},
      {"0x10", "text"}, {"nope", "text"}, {"t", "text"}, {"yess", "text"}, {"+-5", "text"},
      {"|-5", "text"}, {"5\n", "text"}};
  // clang-format on
  Classifier classifier;
  for (const auto& c : cases) EXPECT_EQ(c[1], classifier.Classify(c[0])) << '"' << c[0] << '"';
}

}  // namespace
