// XMLParser: the base of the configuration file readers.
//
// It reads a whole file through OrvXmlParser and classifies text values as boolean, integer
// or plain text. Readers derive from it, override the handlers of OrvXmlParser and start a
// parse with their own Parse, which translates the parse codes into file codes.
#pragma once

#include <cstdint>
#include <string>

#include "qr_config/platform/orv_xml_parser.h"
#include "qr_config/platform/qr_export.h"
#include "qr_config/platform/regular_expression.h"

namespace Poco {
class Path;
}

class XMLParser : public OrvXmlParser {
 public:
  // Builds the three matchers, in this order: false words, true words, integers.
  XMLParser();
  ~XMLParser() override;

  // Reads the whole file `file.toString()` and drives the handlers in document order until
  // its end or the first error. Throws QRError(3, 256, code, file.toString()) with code
  // 45 (cannot open or read), 46 (not well-formed), 47 (encoding) or 48 (refused); see
  // orv_xml_parser.h for what triggers each. An exception thrown by a handler passes
  // unchanged and ends the parse. LastError() then tells the line and column.
  void Parse(const Poco::Path& file);

  // Classifies `text` as a whole; the callers set the four outputs to false and 0 first.
  //  - "false", "n", "no" in any letter case: isBoolean = true, booleanValue = false;
  //  - "true", "y", "ye", "yes", "ys" in any letter case: isBoolean = true, booleanValue = true;
  //  - an optional '+', '-' or '|' ('|' counts as '+') and one or more decimal digits whose
  //    value fits 32 bits: isInteger = true, integerValue = the value ("-0" is 0, "0042" 42);
  //  - anything else, including an integer text outside -2147483648 to 2147483647, leaves the
  //    outputs untouched: the value stays plain text.
  // Surrounding white space is not ignored (" yes" is text). Costs a few byte comparisons for
  // most texts; a matcher runs only when a text could match its pattern.
  void ParseParameter(const std::string& text, bool& isBoolean, bool& booleanValue, bool& isInteger,
                      std::int32_t& integerValue);

 protected:
  RegularExpression::Matcher m_FalseMatcher;    // "false|no?", letter case ignored
  RegularExpression::Matcher m_TrueMatcher;     // "true|ye?s?", letter case ignored
  RegularExpression::Matcher m_IntegerMatcher;  // "[+|-]?[0-9]+"
};
