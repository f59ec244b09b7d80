#include "check/alias_check.h"

#include <map>
#include <set>

namespace qrconfig {

namespace {

std::string Quoted(const std::string& text) {
  return "\"" + text + "\"";
}

// The line of the `occurrence`-th (0-based) <NetworkLayer Name="name">, or of its "Alias"
// whose text is `alias` when `alias` is not empty.
unsigned long DriverLine(const XmlDocument& document, const std::string& name,
                         std::size_t occurrence, const std::string& alias) {
  std::size_t seen = 0;
  for (std::size_t i = 0; i < document.Elements.size(); ++i) {
    const XmlElement& element = document.Elements[i];
    const std::string* attribute = element.Attribute("Name");
    if (element.Name != "NetworkLayer" || attribute == nullptr || *attribute != name) continue;
    if (seen++ != occurrence) continue;
    if (alias.empty()) return element.Line;
    for (std::size_t j = i + 1; j < document.Elements.size(); ++j) {
      const XmlElement& child = document.Elements[j];
      if (child.Depth <= element.Depth) break;
      if (child.Name == "Alias" && child.RawText == alias) return child.Line;
    }
    return element.Line;
  }
  return 0;
}

void CheckDriverList(const Installation& installation, Findings& findings) {
  const XmlDocument& document = installation.DriverList().Document;
  std::map<std::string, std::string> names;     // name or alias -> driver, first wins
  std::map<std::string, std::size_t> declared;  // driver -> declarations so far
  const std::string advice =
      "Give every driver names and aliases of its own; remove or "
      "rename the later one.";
  for (const DriverEntry& driver : installation.Drivers()) {
    const std::size_t occurrence = declared[driver.Name]++;
    if (occurrence > 0) {
      findings.Add(Severity::Warning, FindingKind::AliasCollision, document.Path,
                   DriverLine(document, driver.Name, occurrence, ""),
                   "The driver " + Quoted(driver.Name) +
                       " is declared again in the driver list: its name and aliases keep "
                       "resolving to the first declaration.",
                   advice);
    }
    auto name = names.emplace(driver.Name, driver.Name);
    if (!name.second && name.first->second != driver.Name) {
      findings.Add(Severity::Warning, FindingKind::AliasCollision, document.Path,
                   DriverLine(document, driver.Name, occurrence, ""),
                   "The driver name " + Quoted(driver.Name) + " is already an alias of " +
                       Quoted(name.first->second) + ": it resolves to " +
                       Quoted(name.first->second) + ".",
                   advice);
    }
    for (const std::string& alias : driver.Aliases) {
      auto entry = names.emplace(alias, driver.Name);
      if (entry.second || entry.first->second == driver.Name) continue;
      findings.Add(Severity::Warning, FindingKind::AliasCollision, document.Path,
                   DriverLine(document, driver.Name, occurrence, alias),
                   "The alias " + Quoted(alias) + " of the driver " + Quoted(driver.Name) +
                       " is already taken by the driver " + Quoted(entry.first->second) +
                       ", declared before it: " + Quoted(alias) + " resolves to " +
                       Quoted(entry.first->second) + ".",
                   advice);
    }
  }
}

void CheckDatabases(const Installation& installation, Findings& findings) {
  // Per driver, the database-name table as loading fills it, across its setup files.
  std::map<std::string, std::map<std::string, std::string>> tables;
  const std::string advice =
      "Give every database of a driver names and aliases of its own; "
      "remove or rename the later one.";
  for (const SetupEntry& entry : installation.SetupEntries()) {
    if (!entry.Model) continue;
    auto& table = tables[entry.Driver];
    const std::string& path = entry.DataFilePath;
    for (const DatabaseDeclaration& database : entry.Model->Databases()) {
      if (database.Result != DatabaseDeclaration::Accepted) continue;
      auto name = table.emplace(database.Name, database.Name);
      if (!name.second) {
        const bool twice = name.first->second == database.Name;
        findings.Add(Severity::Warning, FindingKind::AliasCollision, path, database.Line,
                     twice ? "The database " + Quoted(database.Name) + " of the driver " +
                                 Quoted(entry.Driver) +
                                 " is declared again: it gets a second node, but lookups by "
                                 "name and path reach the first."
                           : "The database name " + Quoted(database.Name) + " of the driver " +
                                 Quoted(entry.Driver) + " is already an alias of the database " +
                                 Quoted(name.first->second) + ": it resolves to " +
                                 Quoted(name.first->second) + ".",
                     advice);
      }
      for (const auto& [alias, line] : database.Aliases) {
        auto aliasEntry = table.emplace(alias, database.Name);
        if (aliasEntry.second || aliasEntry.first->second == database.Name) continue;
        findings.Add(Severity::Warning, FindingKind::AliasCollision, path, line,
                     "The alias " + Quoted(alias) + " of the database " + Quoted(database.Name) +
                         " is already taken by the database " + Quoted(aliasEntry.first->second) +
                         " of the driver " + Quoted(entry.Driver) + ": it resolves to " +
                         Quoted(aliasEntry.first->second) + ".",
                     advice);
      }
    }
  }
}

}  // namespace

void AliasCheck::Run(const Installation& installation, Findings& findings) const {
  CheckDriverList(installation, findings);
  CheckDatabases(installation, findings);
}

}  // namespace qrconfig
