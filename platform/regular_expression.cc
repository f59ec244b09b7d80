#include "qr_config/platform/regular_expression.h"

#define PCRE2_CODE_UNIT_WIDTH 8
#include <pcre2.h>

#include "qr_config/platform/platform_errors.h"

namespace RegularExpression {
namespace {

struct CodeDeleter {
  void operator()(pcre2_code* code) const { pcre2_code_free(code); }
};
struct ContextDeleter {
  void operator()(pcre2_match_context* context) const { pcre2_match_context_free(context); }
};
struct DataDeleter {
  void operator()(pcre2_match_data* data) const { pcre2_match_data_free(data); }
};
using Code = std::unique_ptr<pcre2_code, CodeDeleter>;

Code Compile(const std::string& pattern, std::uint32_t flags) {
  int error = 0;
  PCRE2_SIZE offset = 0;
  return Code(pcre2_compile(reinterpret_cast<PCRE2_SPTR>(pattern.data()), pattern.size(), flags,
                            &error, &offset, nullptr));
}

}  // namespace

struct Matcher::Compiled {
  Code Expression;
  std::unique_ptr<pcre2_match_context, ContextDeleter> Context;
  // Reused by every matches(): PCRE2 keeps its backtracking frames in it between matches.
  std::unique_ptr<pcre2_match_data, DataDeleter> Data;
};

Matcher::Matcher(const std::string& pattern, int options) : m_Pattern(pattern) {
  const std::uint32_t flags = (options & kIgnoreCase) != 0 ? PCRE2_CASELESS : 0;
  // The bare pattern first: wrapping could balance a stray ")" and hide the error.
  if (!Compile(pattern, flags)) PlatformErrors::ThrowPatternError(pattern);
  // "\E" ends a "\Q" quote left open at the end of the pattern, and is ignored otherwise.
  auto compiled = std::make_unique<Compiled>();
  compiled->Expression = Compile("(?:" + pattern + "\\E)\\z", flags);
  if (!compiled->Expression) PlatformErrors::ThrowPatternError(pattern);
  compiled->Context.reset(pcre2_match_context_create(nullptr));
  // Only the whole match is ever asked for: one pair of offsets is enough.
  compiled->Data.reset(pcre2_match_data_create(1, nullptr));
  if (!compiled->Context || !compiled->Data) PlatformErrors::ThrowPatternError(pattern);
  pcre2_set_match_limit(compiled->Context.get(), kMatchLimit);
  pcre2_set_heap_limit(compiled->Context.get(), kHeapLimitKiB);
  m_Compiled = std::move(compiled);
}

Matcher::~Matcher() = default;

void Matcher::reset(const std::string& text) {
  m_Text.assign(text);
}

bool Matcher::matches() const {
  const int result = pcre2_match(m_Compiled->Expression.get(),
                                 reinterpret_cast<PCRE2_SPTR>(m_Text.data()), m_Text.size(), 0,
                                 PCRE2_ANCHORED, m_Compiled->Data.get(), m_Compiled->Context.get());
  // 0 is a match whose captures did not fit the match data; only the whole match counts.
  if (result >= 0) return true;
  if (result == PCRE2_ERROR_NOMATCH) return false;
  PlatformErrors::ThrowPatternError(m_Pattern);
}

}  // namespace RegularExpression
