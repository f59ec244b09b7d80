#include "qr_config/platform/regular_expression.h"

#include <Poco/Exception.h>
#include <Poco/RegularExpression.h>

#include "qr_config/platform/platform_errors.h"

namespace RegularExpression {

Matcher::Matcher(const std::string& pattern, int options) : m_Pattern(pattern) {
  int flags = (options & kIgnoreCase) != 0 ? Poco::RegularExpression::RE_CASELESS : 0;
  try {
    // The bare pattern first: wrapping could balance a stray ")" and hide the error.
    Poco::RegularExpression bare(pattern, flags, false);
    // "\E" ends a "\Q" quote left open at the end of the pattern, and is ignored otherwise.
    m_Expression = std::make_unique<Poco::RegularExpression>("(?:" + pattern + "\\E)\\z", flags);
  } catch (const Poco::RegularExpressionException&) {
    PlatformErrors::ThrowPatternError(pattern);
  }
}

Matcher::~Matcher() = default;

void Matcher::reset(const std::string& text) {
  m_Text.assign(text);
}

bool Matcher::matches() const {
  Poco::RegularExpression::Match match{};
  try {
    return m_Expression->match(m_Text, 0, match, Poco::RegularExpression::RE_ANCHORED) > 0;
  } catch (const Poco::RegularExpressionException& error) {
    // POCO reports a successful match of a pattern with more than 20 capturing groups this
    // way (its vector of offsets is too short). Any match of the anchored whole-text form
    // covers the whole text, so the offsets are not needed.
    if (error.message() == "too many captured substrings") return true;
    PlatformErrors::ThrowPatternError(m_Pattern);
  }
}

}  // namespace RegularExpression
