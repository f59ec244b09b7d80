// The nearest spelling of a mistyped name, for "did you mean" hints of every command.
#pragma once

#include <string>
#include <vector>

namespace qrconfig {

// The known name closest to `name` among `candidates`: one that differs only in letter case,
// or by at most two edits (insertions, deletions, substitutions, swaps of neighbours) when
// the name has 4 to 64 characters; the first of equally close ones; empty when there is none.
// Costs |name| x |candidate| steps per candidate.
std::string Suggestion(const std::string& name, const std::vector<std::string>& candidates);

}  // namespace qrconfig
