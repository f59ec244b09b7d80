#include "check/database_check.h"

#include <map>

#include <Poco/Path.h>

#include "qr_config/config/manager/config_manager_impl.h"
#include "qr_config/platform/process.h"
#include "qr_config/platform/sfile.h"

namespace qrconfig {

namespace {

std::string Quoted(const std::string& text) {
  return "\"" + text + "\"";
}

std::string Join(const std::vector<std::string>& texts) {
  std::string joined;
  for (const std::string& text : texts) joined += (joined.empty() ? "" : ", ") + text;
  return joined;
}

void CheckSkipped(const Installation& installation, const SetupEntry& entry, Findings& findings) {
  const std::string& path = entry.DataFilePath;
  bool badPatternReported = false;
  for (const DatabaseDeclaration& database : entry.Model->Databases()) {
    const std::string name = Quoted(database.Name);
    switch (database.Result) {
      case DatabaseDeclaration::Accepted:
        break;
      case DatabaseDeclaration::NoActiveAttribute:
        findings.Add(Severity::Warning, FindingKind::DatabaseSkipped, path, database.Line,
                     "The database " + name + " has no \"Active\" attribute: it is never loaded.",
                     "Add Active=\"Yes\" to load it, or Active=\"No\" to show it is off on "
                     "purpose.");
        break;
      case DatabaseDeclaration::Inactive:
        findings.Add(Severity::Note, FindingKind::DatabaseSkipped, path, database.Line,
                     "The database " + name + " is not active (Active=\"No\"): it is skipped.",
                     "Write Active=\"Yes\" to load it.");
        break;
      case DatabaseDeclaration::OtherPlatform:
        findings.Add(Severity::Note, FindingKind::DatabaseSkipped, path, database.Line,
                     "The database " + name + " is for the platforms " + Quoted(database.Platform) +
                         ", none of which this platform supports (" +
                         Join(Process::Instance().PlatformNames()) + "): it is skipped.",
                     "Nothing to do here; check another platform with --platform.");
        break;
      case DatabaseDeclaration::NotActiveSource:
        findings.Add(Severity::Note, FindingKind::DatabaseSkipped, path, database.Line,
                     "The database " + name +
                         " matches none of the active data-source "
                         "patterns of " +
                         Quoted(entry.Driver) + " (" +
                         Join(*installation.PatternsOf(entry.Driver)) + "): it is skipped.",
                     "To load it, add a pattern that matches its whole name to the active data "
                     "sources.");
        break;
      case DatabaseDeclaration::BadPattern:
        if (badPatternReported) break;
        badPatternReported = true;
        findings.Add(Severity::Error, FindingKind::DatabaseSkipped, path, database.Line,
                     "The active data-source pattern " + Quoted(database.Pattern) + " of " +
                         Quoted(entry.Driver) +
                         " is not a valid regular expression: loading the driver fails with "
                         "QRError 283.",
                     "Fix the pattern; it must match a database's whole name.");
        break;
    }
  }
}

void CheckConflicts(const Installation& installation, const SetupEntry& entry, Findings& findings) {
  const bool ignored = installation.IgnoresDriverFailures();
  for (const TypeConflict& conflict : entry.Model->Conflicts()) {
    const std::string where = conflict.Section == "Defaults"
                                  ? std::string("the <Defaults> section")
                                  : "the database " + Quoted(conflict.Section);
    findings.Add(Severity::Error, FindingKind::ValueType, entry.DataFilePath, conflict.Line,
                 "The value " + Quoted(conflict.Text) + " of " + Quoted(conflict.Field) + " in " +
                     where + " is a " + TagName(conflict.Given) +
                     ", but the field it updates is a " + TagName(conflict.Existing) +
                     ": the reader stops with QRError 1 and the driver " + Quoted(entry.Driver) +
                     (ignored ? " loads no further database."
                              : " fails the start-up (reported as QRError 10)."),
                 std::string("Write a value of the field's type (") + TagName(conflict.Existing) +
                     "), or a parameter of another name; types follow the text: Yes/No are "
                     "Bool, digits are Long.");
  }
}

void CheckReadTypes(const SetupEntry& entry, const DatabaseDeclaration& database,
                    Findings& findings) {
  const ModelField* extensions = database.FindField("Extensions");
  if (extensions != nullptr && extensions->Type != ValueTag::String) {
    findings.Add(Severity::Warning, FindingKind::ValueType, entry.DataFilePath,
                 extensions->Line ? extensions->Line : database.Line,
                 "\"Extensions\" of the database " + Quoted(database.Name) + " is the " +
                     TagName(extensions->Type) + " " + Quoted(extensions->Text) +
                     ": extensions are looked for only in a text, so none is found.",
                 "Write the extension names as a comma-separated text that is not a number.");
  }
}

// The problem with a character-set table file, or the empty text when it serves.
std::string TableProblem(const std::string& file) {
  try {
    const SFile table(file, SFile::kRead | SFile::kClassify);
    if (table.FindSection("CharSets") != nullptr) return "";
    for (const std::string& name : Process::Instance().PlatformNames()) {
      if (table.FindSection(name) != nullptr) return "";
    }
    return "the file " + Quoted(file) + " has no [CharSets] section (nor one for this platform)";
  } catch (const SFile::Exception& error) {
    std::string text = error.what();
    while (!text.empty() && text.back() == '.') text.pop_back();
    return text;
  }
}

void CheckCharSetTable(const Installation& installation, const SetupEntry& entry,
                       const DatabaseDeclaration& database,
                       std::map<std::string, std::string>& problems, Findings& findings) {
  const ModelField* unicode = database.FindField("Unicode");
  if (unicode != nullptr && unicode->Type == ValueTag::String && unicode->Text != "CharSet") return;
  const auto extension = installation.TextSetting("CharSet List Extension");
  const ModelField* directory = database.FindField("Directory");
  if (!extension || directory == nullptr) return;
  const ModelField* table = database.FindField("CharSet Table");
  std::string problem;
  unsigned long line = database.Line;
  if (table == nullptr) {
    problem = "it has no \"CharSet Table\" parameter";
  } else if (table->Type != ValueTag::String) {
    problem = "its \"CharSet Table\" is the " + std::string(TagName(table->Type)) + " " +
              Quoted(table->Text) + ", not a file name";
    if (table->Line) line = table->Line;
  } else {
    const std::string base =
        Poco::Path(Poco::Path(JoinNative(installation.ConfigDirectory(), directory->Text)),
                   table->Text)
            .toString();
    const std::string file = base + "." + *extension;
    auto known = problems.find(file);
    if (known == problems.end()) known = problems.emplace(file, TableProblem(file)).first;
    problem = known->second;
  }
  if (problem.empty()) return;
  findings.Add(Severity::Warning, FindingKind::CharSetTable, entry.DataFilePath, line,
               "The database " + Quoted(database.Name) +
                   " asks for a character-set table (\"Unicode\" is \"CharSet\" or missing), "
                   "but gets none: " +
                   problem + ".",
               "Give it \"CharSet Table\" naming a table file in its directory with a "
               "[CharSets] section, or set \"Unicode\" to another value if it needs no table.");
}

}  // namespace

void DatabaseCheck::Run(const Installation& installation, Findings& findings) const {
  std::map<std::string, std::string> tableProblems;  // table file -> problem, read once
  for (const SetupEntry& entry : installation.SetupEntries()) {
    if (!entry.Model) continue;
    CheckSkipped(installation, entry, findings);
    CheckConflicts(installation, entry, findings);
    for (const DatabaseDeclaration& database : entry.Model->Databases()) {
      if (database.Result != DatabaseDeclaration::Accepted) continue;
      CheckReadTypes(entry, database, findings);
      CheckCharSetTable(installation, entry, database, tableProblems, findings);
    }
  }
}

}  // namespace qrconfig
