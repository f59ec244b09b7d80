#include "app/suggestion.h"

#include <algorithm>
#include <cctype>

namespace qrconfig {

namespace {

std::string Lower(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return text;
}

// Edit distance with swaps of neighbours (optimal string alignment).
std::size_t Distance(const std::string& a, const std::string& b) {
  std::vector<std::vector<std::size_t>> d(a.size() + 1, std::vector<std::size_t>(b.size() + 1));
  for (std::size_t i = 0; i <= a.size(); ++i) d[i][0] = i;
  for (std::size_t j = 0; j <= b.size(); ++j) d[0][j] = j;
  for (std::size_t i = 1; i <= a.size(); ++i) {
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const std::size_t cost = a[i - 1] == b[j - 1] ? 0 : 1;
      d[i][j] = std::min({d[i - 1][j] + 1, d[i][j - 1] + 1, d[i - 1][j - 1] + cost});
      if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1])
        d[i][j] = std::min(d[i][j], d[i - 2][j - 2] + 1);
    }
  }
  return d[a.size()][b.size()];
}

}  // namespace

std::string Suggestion(const std::string& name, const std::vector<std::string>& candidates) {
  const std::string lower = Lower(name);
  std::string best;
  std::size_t bestDistance = 3;
  for (const std::string& candidate : candidates) {
    if (Lower(candidate) == lower) return candidate;
    if (name.size() < 4 || name.size() > 64) continue;  // long names are no typos
    const std::size_t distance = Distance(lower, Lower(candidate));
    if (distance < bestDistance) {
      bestDistance = distance;
      best = candidate;
    }
  }
  return best;
}

}  // namespace qrconfig
