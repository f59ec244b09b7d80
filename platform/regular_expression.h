// RegularExpression::Matcher: whole-text matching of one compiled pattern.
//
// Dialect: PCRE2's (Perl-compatible), working on bytes (no UTF mode unless the pattern asks
// for it with "(*UTF)"), so "." matches one byte and letter case is folded for ASCII letters
// only. A text matches only when the pattern matches all of it, from the first byte to the
// last: the pattern is compiled as "(?:pattern)\z" and matched anchored at the start, so
// alternatives are tried until one ends at the end of the text ("a|ab" matches "ab").
// Recursion into the whole pattern ((?R), (?0)) therefore sees the end anchor too.
//
// Bounded cost. Matching runs PCRE2's interpreter, which keeps its backtracking frames on the
// heap, never on the C stack, so no pattern and no text can exhaust the stack. Each match is
// bounded by two limits; reaching either is a give-up, reported as QRError 283:
//  - kMatchLimit steps of the matching loop (time: catastrophic backtracking such as
//    "(x+x+)+y" on 5,000 x gives up after about 0.2 s on a current machine);
//  - kHeapLimitKiB of backtracking memory (a repeated group such as "(a|b)*" keeps one frame
//    per repetition, so texts of up to about 200,000 repetitions of a group match; a single
//    repeated item such as ".*" or "[a-z]*" keeps no frame per repetition and has no such
//    bound).
// A pattern that cannot compile is 283 too; compiling is bounded by PCRE2's own limits
// (nesting of parentheses up to 250).
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "qr_config/platform/qr_export.h"

namespace RegularExpression {

class Matcher {
 public:
  // The options value 2: letter case is ignored.
  static constexpr int kIgnoreCase = 2;
  // The most steps of PCRE2's matching loop one matches() may take.
  static constexpr std::uint32_t kMatchLimit = 10'000'000;
  // The most backtracking memory, in KiB, one matches() may use (64 MiB).
  static constexpr std::uint32_t kHeapLimitKiB = 64 * 1024;

  // Compiles `pattern`. `options` is 0 or kIgnoreCase; other bits are ignored.
  // Throws QRError(3, 256, QRErrorCode::InvalidPattern, pattern) when the pattern does not
  // compile, alone or in its whole-text form (for example a pattern ending inside an
  // extended-mode comment). Costs one compilation of the pattern.
  Matcher(const std::string& pattern, int options);
  ~Matcher();
  Matcher(const Matcher&) = delete;
  Matcher& operator=(const Matcher&) = delete;

  // Sets the text the next matches() tests; the text is copied (storage is reused).
  // Before the first reset the text is empty.
  void reset(const std::string& text);

  // True when the whole text of the last reset matches the pattern; the empty text can match
  // (".*" does). Throws QRError 283 with the pattern when the match gives up (one of the
  // limits above, or a text that is not UTF-8 for a pattern in UTF mode). Linear in the
  // length of the text for patterns without nested repeats; never more than the limits.
  bool matches() const;

  const std::string& Pattern() const { return m_Pattern; }

 private:
  struct Compiled;  // PCRE2's code, match context and match data (regular_expression.cc)

  std::string m_Pattern;
  std::unique_ptr<Compiled> m_Compiled;  // the whole-text form
  std::string m_Text;
};

}  // namespace RegularExpression
