#include "check/setup_check.h"

#include "app/suggestion.h"

namespace qrconfig {

namespace {

std::string Quoted(const std::string& text) {
  return "\"" + text + "\"";
}

void CheckEntry(const Installation& installation, const SetupEntry& entry, Findings& findings) {
  const std::string& path = entry.File.Document.Path;
  const XmlDocument& document = entry.File.Document;
  if (entry.Skipped) {
    findings.Add(Severity::Note, FindingKind::SetupSkipped, path, 0,
                 "The setup file is left out: names holding \".32.\" before the setup "
                 "extension mark 32-bit setup files.",
                 "Nothing to do, unless the file was meant to be loaded: then rename it.");
    return;
  }
  if (!entry.Read) return;  // XmlErrorCheck reports it
  const unsigned long driverLine = document.LineOf("NetworkLayer");
  if (entry.Driver.empty()) {
    findings.Add(Severity::Warning, FindingKind::SetupNoDriver, path, driverLine,
                 "The setup file names no driver (no <NetworkLayer> with a \"Name\"): the "
                 "loader skips it.",
                 "Add <NetworkLayer Name=\"...\"/> with the driver's name from the driver list.");
    return;
  }
  if (!entry.KnownDriver) {
    std::vector<std::string> names;
    for (const DriverEntry& driver : installation.Drivers()) names.push_back(driver.Name);
    const std::string suggestion = Suggestion(entry.Driver, names);
    findings.Add(Severity::Warning, FindingKind::UnknownDriver, path,
                 document.LineOf("NetworkLayer", "Name", entry.Driver),
                 "The setup file names the driver " + Quoted(entry.Driver) +
                     ", which the driver list does not declare: the loader skips it" +
                     (suggestion.empty() ? "" : " (did you mean " + Quoted(suggestion) + "?)") +
                     ".",
                 "Declare the driver in driver.cfg, or correct the name; names are "
                 "case-sensitive.");
    return;
  }
  if (!entry.NativeDriver) {
    const DriverEntry* driver = installation.FindDriver(entry.Driver);
    findings.Add(Severity::Note, FindingKind::NonNativeDriver, path,
                 document.LineOf("NetworkLayer", "Name", entry.Driver),
                 "The setup file names " + Quoted(entry.Driver) +
                     ", which is not a native driver (Implementation " +
                     Quoted(driver->Implementation) +
                     ", not \"C\"): the library loads nothing "
                     "from it.",
                 "Nothing to do for a driver of another implementation; for a native driver "
                 "write Implementation=\"C\" in driver.cfg.");
    return;
  }
  if (!entry.ActiveDriver) {
    findings.Add(Severity::Note, FindingKind::DriverSkipped, path,
                 document.LineOf("NetworkLayer", "Name", entry.Driver),
                 "The active data sources name no database of " + Quoted(entry.Driver) +
                     ": the loader skips its setup file.",
                 std::string("To load it, add the driver to the active data sources (") +
                     (installation.Mode() == Initialization::Server
                          ? "--active in server mode"
                          : "<ActiveDataSources> of qr.cfg in library mode") +
                     ").");
    return;
  }
  if (entry.DataFilePath.empty() || entry.DataFileExists) return;
  const bool ignored = installation.IgnoresDriverFailures();
  const unsigned long line = document.LineOf("DataFileName") ? document.LineOf("DataFileName")
                                                             : document.LineOf("Directory");
  findings.Add(ignored ? Severity::Warning : Severity::Error, FindingKind::MissingDataFile, path,
               line,
               "The setup file of " + Quoted(entry.Driver) + " names the data-access file " +
                   Quoted(entry.DataFilePath) + " (Directory " + Quoted(entry.Directory) +
                   ", DataFileName " + Quoted(entry.DataFileName) +
                   ", the \"Config File Extension\"), which does not exist: " +
                   (ignored ? "the driver loads no database."
                            : "the start-up fails with QRError 279, reported as QRError 10."),
               "Correct Directory or DataFileName (Directory is relative to the configuration "
               "directory), or install the data-access file.");
}

}  // namespace

void SetupCheck::Run(const Installation& installation, Findings& findings) const {
  for (const SetupEntry& entry : installation.SetupEntries())
    CheckEntry(installation, entry, findings);
}

}  // namespace qrconfig
