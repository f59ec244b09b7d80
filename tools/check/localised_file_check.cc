#include "check/localised_file_check.h"

#include "app/suggestion.h"

namespace qrconfig {

namespace {

std::string Quoted(const std::string& text) {
  return "\"" + text + "\"";
}

}  // namespace

void LocalisedFileCheck::Run(const Installation& installation, Findings& findings) const {
  std::vector<std::string> drivers;
  for (const DriverEntry& driver : installation.Drivers()) drivers.push_back(driver.Name);
  for (const ScannedFile& file : installation.LocalisedFiles()) {
    const XmlDocument& document = file.Document;
    if (!document.Complete()) continue;
    // Per <NetworkLayer>: whether it holds a message whose id is "Name".
    std::vector<bool> named(document.Elements.size(), false);
    for (const XmlElement& element : document.Elements) {
      const std::string* id = element.Attribute("id");
      if (element.Name == "Message" && id != nullptr && *id == "Name" &&
          document.ParentIs(element, "NetworkLayer"))
        named[element.Parent] = true;
    }
    for (std::size_t i = 0; i < document.Elements.size(); ++i) {
      const XmlElement& element = document.Elements[i];
      const std::string* name = element.Attribute("Name");
      if (element.Name != "NetworkLayer" || name == nullptr) continue;
      if (installation.FindDriver(*name) == nullptr) {
        const std::string suggestion = Suggestion(*name, drivers);
        findings.Add(Severity::Warning, FindingKind::UnknownDriver, document.Path, element.Line,
                     "The localised file gives texts for " + Quoted(*name) +
                         ", which the driver list does not declare: they are never shown" +
                         (suggestion.empty() ? "" : " (did you mean " + Quoted(suggestion) + "?)") +
                         ".",
                     "Use the driver's name from driver.cfg; names are case-sensitive.");
      } else if (!named[i]) {
        findings.Add(Severity::Warning, FindingKind::IgnoredElement, document.Path, element.Line,
                     "The texts of " + Quoted(*name) +
                         " have no message with id \"Name\": the reader drops them.",
                     "Add <Message id=\"Name\">...</Message> with the driver's external name.");
      }
    }
  }
}

}  // namespace qrconfig
