#include "check/main_file_check.h"

#include <map>
#include <vector>

#include <Poco/Path.h>

#include "check/value_kind.h"
#include "output/field_text.h"
#include "qr_config/platform/process.h"
#include "qr_config/platform/qr_error.h"
#include "qr_config/platform/sfile.h"

namespace qrconfig {

namespace {

using Field = ConfigManagerTypes::Field;

struct Requirement {
  const char* Name;
  ValueTag Type;
  bool Required;
  const char* Role;
};

std::string Quoted(const std::string& text) {
  return "\"" + text + "\"";
}

// The first "Parameter" named `name` directly inside `section`, or nullptr.
const XmlElement* ParameterIn(const XmlDocument& document, const std::string& section,
                              const std::string& name) {
  for (const XmlElement& element : document.Elements) {
    const std::string* attribute = element.Attribute("Name");
    if (element.Name == "Parameter" && attribute != nullptr && *attribute == name &&
        document.ParentIs(element, section))
      return &element;
  }
  return nullptr;
}

std::string PlatformFamily() {
  std::string names;
  for (const std::string& name : Process::Instance().PlatformNames())
    names += (names.empty() ? "" : ", ") + name;
  return names;
}

void CheckReaderStop(const Installation& installation, Findings& findings) {
  const XmlDocument& document = installation.MainFile().Document;
  if (installation.MainFileError() == 0 || !document.Complete()) return;
  std::vector<bool> holdsTrace(document.Elements.size(), false);
  for (const XmlElement& element : document.Elements) {
    if (element.Name == "Trace" && element.Parent != XmlElement::kNoParent)
      holdsTrace[element.Parent] = true;
  }
  for (std::size_t i = 0; i < document.Elements.size(); ++i) {
    const XmlElement& element = document.Elements[i];
    if (element.Name != "Trace" || document.ParentIs(element, "Trace") || holdsTrace[i]) continue;
    const std::string* name = element.Attribute("Name");
    findings.Add(Severity::Error, FindingKind::Structure, document.Path, element.Line,
                 "The single trace <Trace Name=" + Quoted(name ? *name : "") +
                     "> stands directly inside <Traces>, outside any group: the reader has no "
                     "node to put it in and stops with QRError 267, so the start-up fails.",
                 "Put single traces inside a group: <Trace Name=\"Group\" Active=\"Yes\"> "
                 "holding <Trace Name=\"...\" Active=\"Yes\"/>.");
    return;
  }
  findings.Add(Severity::Error, FindingKind::Structure, document.Path, 0,
               "The main-file reader stops with QRError " +
                   std::to_string(installation.MainFileError()) + " (" +
                   QRErrorMeaning(installation.MainFileError(), false) + "): the start-up fails.",
               "Give every \"NetworkLayer\" and \"DataBase\" of the main file a \"Name\", and "
               "put single traces inside a trace group.");
}

void CheckSettings(const Installation& installation, Findings& findings) {
  const XmlDocument& document = installation.MainFile().Document;
  const bool library = installation.Mode() == Initialization::Library;
  const Requirement requirements[] = {
      {"Setup File Extension", Field::String, true, "the extension of setup files"},
      {"Config File Extension", Field::String, true, "the extension of data-access files"},
      {"CharSet List Extension", Field::String, true,
       "the extension of character-set lists and tables"},
      {"SQL External Extension", Field::String, false, "the extension of extension marker files"},
      {"Ignore Driver Load Failure", Field::Bool, library,
       "whether a failing driver is skipped in library mode"},
  };
  const auto& settings = installation.Settings();
  for (const Requirement& requirement : requirements) {
    if (!settings.Exists(requirement.Name)) {
      if (!requirement.Required) continue;
      findings.Add(
          Severity::Error, FindingKind::MissingSetting, document.Path, document.LineOf("Settings"),
          "<Settings> has no parameter " + Quoted(requirement.Name) + " (" + requirement.Role +
              "): the start-up fails.",
          "Add <Parameter Name=\"" + std::string(requirement.Name) + "\">" +
              (requirement.Type == Field::Bool ? "No" : "...") + "</Parameter> to <Settings>.");
      continue;
    }
    const Field& field = settings.Find(requirement.Name);
    if (field.ValueType() == requirement.Type) continue;
    const XmlElement* element = ParameterIn(document, "Settings", requirement.Name);
    const bool boolean = requirement.Type == Field::Bool;
    // Only library mode reads the driver-load flag.
    const Severity level = boolean && !library ? Severity::Warning : Severity::Error;
    findings.Add(level, FindingKind::ValueType, document.Path, element ? element->Line : 0,
                 Quoted(requirement.Name) + " is written as " + Quoted(PlainValue(field)) +
                     ", which makes it a " + TypeName(field.ValueType()) +
                     "; the start-up reads it as a " + TagName(requirement.Type) + " (" +
                     requirement.Role + ") and fails with QRError 1" +
                     (boolean && !library ? " in library mode." : "."),
                 boolean ? "Write Yes or No."
                         : "Write a text that is not a number or a yes/no "
                           "word, for example an extension such as \"sqx\".");
  }
}

void CheckModeSections(const Installation& installation, Findings& findings) {
  const XmlDocument& document = installation.MainFile().Document;
  const std::string selected =
      installation.Mode() == Initialization::Library ? "Library" : "Server";
  const auto& settings = installation.Settings();
  for (const XmlElement& element : document.Elements) {
    const XmlElement* section = document.ParentOf(element);
    if (element.Name != "Parameter" || section == nullptr || section->Name != selected ||
        !document.ParentIs(*section, "Settings"))
      continue;
    const std::string name = element.Attribute("Name") ? *element.Attribute("Name") : "";
    if (!settings.Exists(name)) {
      findings.Add(Severity::Warning, FindingKind::IgnoredElement, document.Path, element.Line,
                   "The <" + selected + "> section sets " + Quoted(name) +
                       ", which <Settings> does not give: a mode section only changes existing "
                       "settings, so this changes nothing.",
                   "Give " + Quoted(name) + " a value in <Settings> before the mode sections.");
      continue;
    }
    const ValueTag type = ClassifyValue(element.Text);
    const ValueTag existing = settings.Find(name).ValueType();
    if (type == existing) continue;
    findings.Add(Severity::Warning, FindingKind::ValueType, document.Path, element.Line,
                 "The <" + selected + "> section gives " + Quoted(name) + " the " + TagName(type) +
                     " " + Quoted(element.Text) + ", but the setting is a " + TagName(existing) +
                     ": the reader ignores the change.",
                 std::string("Write a value of the setting's type (") + TagName(existing) + ").");
  }
}

void CheckPlacement(const Installation& installation, Findings& findings) {
  const XmlDocument& document = installation.MainFile().Document;
  // Per "Settings" element: whether a mode section has been seen among its children.
  std::map<std::size_t, std::string> modeSeen;
  // Per element: whether it lies inside "Settings" or "DriverDefaults" (one pass, parents
  // come before their children).
  std::vector<bool> inSection(document.Elements.size(), false);
  for (std::size_t i = 0; i < document.Elements.size(); ++i) {
    const XmlElement& element = document.Elements[i];
    const XmlElement* parent = document.ParentOf(element);
    if (parent != nullptr) {
      inSection[i] = inSection[element.Parent] || parent->Name == "Settings" ||
                     parent->Name == "DriverDefaults";
    }
    if (parent != nullptr && parent->Name == "Settings") {
      if (element.Name == "Library" || element.Name == "Server") {
        modeSeen.emplace(element.Parent, element.Name);
      } else if ((element.Name == "Parameter" || element.Name == "ActiveDataSources" ||
                  element.Name == "NetworkLayer") &&
                 modeSeen.count(element.Parent) > 0) {
        findings.Add(Severity::Warning, FindingKind::IgnoredElement, document.Path, element.Line,
                     "<" + element.Name + "> stands after the <" + modeSeen[element.Parent] +
                         "> section inside <Settings>: the reader then takes it as part of a "
                         "mode section or ignores it, depending on the mode.",
                     "Put plain parameters, active data sources and drivers before the "
                     "<Library> and <Server> sections.");
      }
    }
    if (element.Name == "Parameter" && !inSection[i]) {
      findings.Add(Severity::Warning, FindingKind::IgnoredElement, document.Path, element.Line,
                   "<Parameter> stands outside <Settings> and <DriverDefaults>: the reader "
                   "ignores it.",
                   "Move it into <Settings> (driver-area settings) or <DriverDefaults> "
                   "(defaults of every database).");
    }
  }
}

void CheckDriversDefaults(const Installation& installation, Findings& findings) {
  const XmlDocument& document = installation.MainFile().Document;
  std::map<std::string, ValueTag> types;
  for (const auto& field : installation.DriversDefaults()) {
    auto known = types.emplace(field.Name(), field.ValueType());
    if (known.second || known.first->second == field.ValueType()) continue;
    const XmlElement* element = ParameterIn(document, "DriverDefaults", field.Name());
    findings.Add(Severity::Error, FindingKind::ValueType, document.Path,
                 element ? element->Line : 0,
                 "<DriverDefaults> gives " + Quoted(field.Name()) + " both a " +
                     TagName(known.first->second) + " and a " + TagName(field.ValueType()) +
                     " value (the start-up adds \"Status\" 0 and \"Library Name\" \"Not "
                     "Defined\" behind the main file's): merging them fails with QRError 1, "
                     "so no driver loads.",
                 "Give " + Quoted(field.Name()) +
                     " values of one type only (\"Status\" a "
                     "number, \"Library Name\" a text).");
  }
}

// Database nodes that the main file makes below DBDrivers need a "Directory" too: the
// start-up reads it for every database when it builds the character-set tables.
void CheckMainFileDatabases(const Installation& installation, Findings& findings) {
  const XmlDocument& document = installation.MainFile().Document;
  const auto& drivers = installation.DBDriversNode();
  for (auto driver = drivers.ch_begin(); driver != drivers.ch_end(); ++driver) {
    for (auto database = (*driver).ch_begin(); database != (*driver).ch_end(); ++database) {
      const auto& node = (*database).value();
      if (node.Exists("Directory") && node.Find("Directory").ValueType() == Field::String) continue;
      findings.Add(Severity::Error, FindingKind::MissingSetting, document.Path,
                   document.LineOf("NetworkLayer", "Name", (*driver).value().Name()),
                   "The main file makes the database node " + Quoted(node.Name()) +
                       " below the driver " + Quoted((*driver).value().Name()) +
                       " without a text \"Directory\": the start-up reads the directory of "
                       "every database and fails with QRError 261, reported as QRError 10.",
                   "Give the <DataBase> a <Parameter Name=\"Directory\">, or declare the "
                   "database in its driver's data-access file instead.");
    }
  }
}

void CheckLocale(const Installation& installation, Findings& findings) {
  const std::string& platform = Process::Instance().Name();
  if (installation.PlatformLocales().count(platform) > 0) return;
  findings.Add(Severity::Error, FindingKind::NoLocale, installation.MainFile().Document.Path, 0,
               "No <Locale> gives a character set for the platform " + Quoted(platform) +
                   " (a <CharSet> counts when its Platform is empty or one of " + PlatformFamily() +
                   "): the start-up fails with QRError 268, reported as QRError 10.",
               "Add <CharSet Platform=\"" + platform +
                   "\"> (or a family of it) to a <Locale>, or check another platform with "
                   "--platform.");
}

void CheckPlatformCharSets(const Installation& installation, Findings& findings) {
  const auto extension = installation.TextSetting("CharSet List Extension");
  if (!extension) return;
  const std::string path =
      Poco::Path(Poco::Path(installation.ConfigDirectory()), "platform").toString() + "." +
      *extension;
  const std::string& platform = Process::Instance().Name();
  try {
    const SFile file(path, SFile::kRead | SFile::kClassify);
    if (file.FindSection(platform) != nullptr) return;
    for (const std::string& name : Process::Instance().PlatformNames()) {
      if (file.FindSection(name) != nullptr) return;
    }
    findings.Add(Severity::Error, FindingKind::CharSetList, path, 0,
                 "The platform character-set list has no section for " + Quoted(platform) +
                     " nor for any of " + PlatformFamily() +
                     ": the start-up fails with QRError 261, reported as QRError 10.",
                 "Add a section [" + platform +
                     "] (or one for a family of it) mapping the "
                     "process's character-set names.");
  } catch (const SFile::Exception& error) {
    const bool missing = error.Kind() == 1 || error.Kind() == 2;
    std::string text = error.what();
    while (!text.empty() && text.back() == '.') text.pop_back();
    findings.Add(Severity::Error, missing ? FindingKind::MissingFile : FindingKind::CharSetList,
                 path, missing ? 0 : static_cast<unsigned long>(error.Line()),
                 "The platform character-set list cannot be used (" + text +
                     "): the start-up fails, reported as QRError 10.",
                 missing ? "Create the file \"platform." + *extension +
                               "\" in the configuration directory (docs/parameter-files.md)."
                         : std::string("Fix the line (docs/parameter-files.md gives the format)."));
  }
}

}  // namespace

void MainFileCheck::Run(const Installation& installation, Findings& findings) const {
  CheckReaderStop(installation, findings);
  if (!installation.MainFile().Document.Complete() || installation.MainFileError() != 0) return;
  CheckSettings(installation, findings);
  CheckModeSections(installation, findings);
  CheckPlacement(installation, findings);
  CheckDriversDefaults(installation, findings);
  CheckMainFileDatabases(installation, findings);
  CheckLocale(installation, findings);
  CheckPlatformCharSets(installation, findings);
}

}  // namespace qrconfig
