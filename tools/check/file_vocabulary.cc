#include "check/file_vocabulary.h"

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

const char* FileKindName(FileKind kind) {
  switch (kind) {
    case FileKind::Main:
      return "main configuration file";
    case FileKind::DriverList:
      return "driver list";
    case FileKind::Localised:
      return "localised driver file";
    case FileKind::Setup:
      return "setup file";
    case FileKind::DataAccess:
      break;
  }
  return "data-access file";
}

const std::vector<ElementWords>& VocabularyOf(FileKind kind) {
  static const std::vector<ElementWords> kMain = {
      {"Locale", {}},
      {"Language", {}},
      {"CharSet", {"Platform"}},
      {"Settings", {}},
      {"Library", {}},
      {"Server", {}},
      {"Parameter", {"Name"}},
      {"ActiveDataSources", {}},
      {"NetworkLayer", {"Name"}},
      {"DataBase", {"Name"}},
      {"DriverDefaults", {}},
      {"Traces", {"Active"}},
      {"Logger", {"Implementation", "ClassID"}},
      {"Trace", {"Name", "Active"}},
  };
  static const std::vector<ElementWords> kDriverList = {
      {"NetworkLayer", {"Name", "Implementation"}},
      {"Alias", {}},
  };
  static const std::vector<ElementWords> kLocalised = {
      {"NetworkLayer", {"Name"}},
      {"Message", {"id"}},
  };
  static const std::vector<ElementWords> kSetup = {
      {"NetworkLayer", {"Name"}},
      {"Directory", {}},
      {"DataFileName", {}},
      {"Version", {"Type"}},
  };
  static const std::vector<ElementWords> kDataAccess = {
      {"Defaults", {}},
      {"DataBase", {"Name", "Active", "Platform"}},
      {"Parameter", {"Name", "Platform"}},
      {"Library", {"Platform"}},
      {"Libraries", {}},
      {"Alias", {}},
  };
  switch (kind) {
    case FileKind::Main:
      return kMain;
    case FileKind::DriverList:
      return kDriverList;
    case FileKind::Localised:
      return kLocalised;
    case FileKind::Setup:
      return kSetup;
    case FileKind::DataAccess:
      break;
  }
  return kDataAccess;
}

const ElementWords* FindElement(FileKind kind, const std::string& element) {
  for (const ElementWords& words : VocabularyOf(kind)) {
    if (element == words.Element) return &words;
  }
  return nullptr;
}

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
