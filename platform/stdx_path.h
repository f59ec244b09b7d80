// stdx::path: a path text split into levels at a separator character.
#pragma once

#include <string>
#include <vector>

#include "qr_config/platform/qr_export.h"

namespace stdx {

// A path is its text, a kind and a separator character; the text is split into levels
// (names) when the path is made or extended, so levels() and operator[] cost O(1).
//
// Splitting rules, for a separator S:
//  - The empty text has no level.
//  - Otherwise one leading S is dropped (it produces no level) and the rest is split at
//    every S. "\Quorin\DBDrivers" and "Quorin\DBDrivers" both have the two levels
//    "Quorin" and "DBDrivers"; the text itself is kept as given.
//  - Levels are taken unchanged: no trimming, no change of case. Doubled and trailing
//    separators give empty levels, which are kept: "\A\\B\" has the levels "A", "", "B", "".
//    The text "\" alone is one empty level. Nothing is rewritten silently; an empty level
//    names a node whose name is empty.
//  - Appending a name (operator+= and the two-text constructor) grows the text by S and the
//    name and splits the name by the same rule, so a name that contains S adds several
//    levels. The text stays a path text that splits into exactly the resulting levels, and
//    levels() grows by one plus the number of S in the name.
//
// A path is a value: copies share nothing. Not synchronised; a const path may be read from
// several threads at once.
class QR_API path {
 public:
  // The kinds of path. Kind 0 is the only one: a plain sequence of names. The kind is
  // recorded with the path and copied with it; splitting does not depend on it.
  enum path_kind { generic = 0 };

  // The path whose text is `text`, split at `separator`.
  path(const std::string& text, path_kind kind, char separator);
  // The path `parent` extended by `name`: the same as path(parent, kind, separator) += name.
  path(const std::string& parent, const std::string& name, path_kind kind, char separator);
  path(const path&) = default;
  path& operator=(const path&) = default;
  virtual ~path();

  // The number of levels; 0 for an empty text.
  int levels() const noexcept { return static_cast<int>(m_Levels.size()); }
  // The name of level `index`, counted from 0 at the root end. Throws std::out_of_range
  // when `index` is not from 0 to levels() - 1.
  std::string operator[](int index) const;
  // Appends `name` as described above; returns *this. On failure (memory) the path is
  // unchanged.
  path& operator+=(const std::string& name);

  // The text, NUL-terminated, valid until the path is changed or destroyed.
  operator const char*() const noexcept { return m_Text.c_str(); }  // NOLINT: implicit
  const std::string& text() const noexcept { return m_Text; }
  path_kind kind() const noexcept { return m_Kind; }
  char separator() const noexcept { return m_Separator; }

 private:
  // Appends the levels of `part` (split at every separator, no leading one dropped).
  void AppendLevels(const std::string& part, std::size_t from);

  std::string m_Text;
  path_kind m_Kind;
  char m_Separator;
  std::vector<std::string> m_Levels;
};

}  // namespace stdx
