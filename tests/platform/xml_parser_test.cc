#include "qr_config/platform/xml_parser.h"

#include <Poco/Path.h>
#include <gtest/gtest.h>

#include <string>

#include "qr_config/platform/qr_error.h"
#include "support/temp_installation.h"

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
  // The same from the three matchers alone, without the pre-checks; for short texts.
  std::string ByMatchers(const std::string& text) {
    m_FalseMatcher.reset(text);
    m_TrueMatcher.reset(text);
    m_IntegerMatcher.reset(text);
    if (m_FalseMatcher.matches()) return "false";
    if (m_TrueMatcher.matches()) return "true";
    if (!m_IntegerMatcher.matches()) return "text";
    return std::to_string(std::stoi(text[0] == '|' ? text.substr(1) : text));
  }
};

TEST(XMLParserTest, ParseParameterClassifiesWholeTexts) {
  // clang-format off
  const char* cases[][2] = {
      {"No", "false"}, {"no", "false"}, {"NO", "false"}, {"N", "false"}, {"FALSE", "false"},
      {"Yes", "true"}, {"Y", "true"}, {"yes", "true"}, {"ys", "true"}, {"True", "true"},
      {"ye", "true"}, {"1", "1"}, {"-0", "0"}, {"+7", "7"}, {"0042", "42"}, {"|5", "5"},
      {"2147483647", "2147483647"}, {"-2147483648", "-2147483648"},
      {"0000000000002147483647", "2147483647"}, {"2147483648", "text"},
      {"-2147483649", "text"}, {"99999999999999999999", "text"}, {"", "text"},
      {" yes", "text"}, {" 5", "text"}, {"yes ", "text"}, {"1.5", "text"}, {"0x10", "text"}, {"nope", "text"},
      {"t", "text"}, {"yess", "text"}, {"+-5", "text"}, {"|-5", "text"}, {"5\n", "text"}};
  // clang-format on
  Classifier classifier;
  for (const auto& c : cases) EXPECT_EQ(c[1], classifier.Classify(c[0])) << '"' << c[0] << '"';
}

TEST(XMLParserTest, PreChecksGiveTheMatchersResults) {
  const std::string alphabet = "fFalsSenNoOtTrRuyYE+-|09 ";
  std::vector<std::string> texts = {"false", "FALSE", "true", "TRUE", "yes"};
  for (char a : alphabet) {
    texts.push_back({a});
    for (char b : alphabet) {
      texts.push_back({a, b});
      for (char c : alphabet) texts.push_back({a, b, c});
    }
  }
  Classifier classifier;
  for (const auto& text : texts) {
    ASSERT_EQ(classifier.ByMatchers(text), classifier.Classify(text)) << '"' << text << '"';
  }
}

TEST(XMLParserTest, ParseNamesTheFileByItsPathText) {
  TempInstallation dir;
  const Poco::Path path(dir.Path("sub/../missing.xml"));
  try {
    Classifier().Parse(path);
    ADD_FAILURE();
  } catch (const QRError& error) {
    EXPECT_EQ(QRErrorCode::ParseCannotRead, error.Code());
    EXPECT_EQ(path.toString(), error.Argument().str());
  }
}

}  // namespace
