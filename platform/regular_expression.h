// RegularExpression::Matcher: whole-text matching of one compiled pattern.
//
// Dialect: PCRE as POCO's Poco::RegularExpression compiles it, working on bytes (no UTF-8
// mode), so "." matches one byte and letter case is folded for ASCII letters only.
// A text matches only when the pattern matches all of it, from the first byte to the last:
// the pattern is compiled as "(?:pattern)\z" and matched anchored at the start, so
// alternatives are tried until one ends at the end of the text ("a|ab" matches "ab").
// Recursion into the whole pattern ((?R), (?0)) therefore sees the end anchor too.
#pragma once

#include <memory>
#include <string>

#include "qr_config/platform/qr_export.h"

namespace Poco {
class RegularExpression;
}

namespace RegularExpression {

class Matcher {
 public:
  // The options value 2: letter case is ignored.
  static constexpr int kIgnoreCase = 2;

  // Compiles `pattern`. `options` is 0 or kIgnoreCase; other bits are ignored.
  // Throws QRError(3, 256, QRErrorCode::InvalidPattern, pattern) when the pattern does not
  // compile, alone or in its whole-text form (for example a pattern ending inside an
  // extended-mode comment). Costs one compilation and study of the pattern.
  Matcher(const std::string& pattern, int options);
  ~Matcher();
  Matcher(const Matcher&) = delete;
  Matcher& operator=(const Matcher&) = delete;

  // Sets the text the next matches() tests; the text is copied (storage is reused).
  // Before the first reset the text is empty.
  void reset(const std::string& text);

  // True when the whole text of the last reset matches the pattern; the empty text can match
  // (".*" does). Throws QRError 283 with the pattern when PCRE gives up on the text (its
  // match limit, reached by catastrophic backtracking).
  bool matches() const;

  const std::string& Pattern() const { return m_Pattern; }

 private:
  std::string m_Pattern;
  std::unique_ptr<Poco::RegularExpression> m_Expression;  // the whole-text form
  std::string m_Text;
};

}  // namespace RegularExpression
