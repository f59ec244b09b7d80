// VocabularyCheck: element and attribute names that the readers pass over.
#pragma once

#include "check/check.h"

namespace qrconfig {

// Reports, as warnings, every element (the root aside) whose name the reader of its file kind
// does not know (kind unknown-element), every attribute a known element does not read (kind
// unknown-attribute), and "Message" elements whose "id" is neither "Name" nor "Comment" (kind
// unknown-value). A misspelt name silently does nothing; each finding suggests the known name
// that is closest to it (letter case, or up to two typing mistakes).
class VocabularyCheck : public Check {
 public:
  void Run(const Installation& installation, Findings& findings) const override;
};

}  // namespace qrconfig
