#include "app/platform_profile.h"

#include <algorithm>
#include <map>
#include <vector>

namespace qrconfig {

namespace {

// A known platform and the families it belongs to, most specific first.
const std::map<std::string, std::vector<std::string>>& KnownPlatforms() {
  static const std::map<std::string, std::vector<std::string>> known = {
      {"Linux", {"Unix"}}, {"AIX", {"Unix"}},     {"Solaris", {"Unix"}}, {"HP-UX", {"Unix"}},
      {"macOS", {"Unix"}}, {"FreeBSD", {"Unix"}}, {"Windows", {}},       {"Unix", {}},
  };
  return known;
}

std::vector<std::string> FamiliesOf(const std::string& name) {
  const auto& known = KnownPlatforms();
  auto entry = known.find(name);
  if (entry != known.end()) return entry->second;
  const std::string::size_type dash = name.find('-');
  // "HP-UX" itself is known; "HP-UX-11" has the base "HP-UX".
  for (std::string::size_type at = dash; at != std::string::npos; at = name.find('-', at + 1)) {
    entry = known.find(name.substr(0, at));
    if (entry == known.end()) continue;
    std::vector<std::string> families{entry->first};
    families.insert(families.end(), entry->second.begin(), entry->second.end());
    return families;
  }
  return {};
}

}  // namespace

Process::Settings PlatformSettings(const std::string& name) {
  Process::Settings settings = Process::Defaults();
  settings.Name = name;
  settings.CharSetName = "UTF-8";
  settings.PlatformNames = {name};
  for (const std::string& family : FamiliesOf(name)) settings.PlatformNames.push_back(family);
  // Every list the platform answers to holds the platform itself.
  for (const std::string& member : settings.PlatformNames) {
    std::vector<std::string>& members = settings.OSLists[member];
    if (std::find(members.begin(), members.end(), name) == members.end()) members.push_back(name);
  }
  return settings;
}

}  // namespace qrconfig
