// Driver discovery and loading: the driver list, the setup files, each loadable driver's
// data-access file, and the extension markers of its databases.
#include <Poco/File.h>
#include <Poco/Path.h>

#include <string_view>
#include <unordered_map>
#include <unordered_set>

#include "qr_config/config/manager/config_keys.h"
#include "qr_config/config/manager/config_manager_impl.h"
#include "qr_config/config/readers/diagnostic_text.h"
#include "qr_config/config/readers/dsf_xml_parser.h"
#include "qr_config/config/readers/load_trace.h"
#include "qr_config/config/readers/setup_xml_parser.h"
#include "qr_config/platform/qr_error.h"

namespace {

using DiagnosticText::Quoted;

// Cuts `text` at every comma; the text after the last comma is the last piece (so a
// trailing comma yields an empty last piece). Pieces are not trimmed.
std::vector<std::string> SplitAtCommas(const std::string& text) {
  std::vector<std::string> pieces;
  std::string::size_type start = 0;
  for (;;) {
    std::string::size_type comma = text.find(',', start);
    if (comma == std::string::npos) {
      pieces.push_back(text.substr(start));
      return pieces;
    }
    pieces.push_back(text.substr(start, comma - start));
    start = comma + 1;
  }
}

// The first child of `parent` of each name, keyed by a view of the child's name.
std::unordered_map<std::string_view, tree_node<ConfigManager::Node>*> FirstChildren(
    tree_node<ConfigManager::Node>& parent) {
  std::unordered_map<std::string_view, tree_node<ConfigManager::Node>*> children;
  children.reserve(parent.ch_size());
  for (auto child = parent.ch_begin(); child != parent.ch_end(); ++child)
    children.emplace((*child).value().Name(), &*child);
  return children;
}

bool EndsWith(const std::string& text, const std::string& tail) {
  return text.size() >= tail.size() &&
         text.compare(text.size() - tail.size(), tail.size(), tail) == 0;
}

// Reads the text value of `field`, a node's first field of a name; false when there is none
// (null) or it is not a text.
bool ReadText(const ConfigManager::Field* field, std::string& out) {
  if (field == nullptr || field->ValueType() != ConfigManager::Field::String) return false;
  field->Value(out);
  return true;
}

}  // namespace

std::vector<DriverEntry>& ConfigManagerImpl::ReadDriverList(std::vector<DriverEntry>& entries,
                                                            const std::string& configDirectory) {
  const Poco::Path file(Poco::Path(configDirectory), ConfigKeys::Instance().DriverListFile);
  if (!Poco::File(file).exists()) {
    if (m_Trace != nullptr)
      m_Trace->SetCause(DiagnosticKind::MissingFile, {m_Trace->Keep(file.toString()), 0, 0},
                        "The driver list " + Quoted(file.toString()) + " does not exist.");
    ThrowQRError(QRErrorCode::FileCannotRead, file.toString());
  }
  try {
    DrvXmlParser reader;
    reader.SetTrace(m_Trace);
    reader.Parse(file);
    entries = reader.Entries();
    std::size_t index = 0;
    for (auto it = entries.begin(); it != entries.end(); ++index) {
      if (m_Trace == nullptr) {
        m_DriverNames.emplace(it->Name, it->Name);
        for (const std::string& alias : it->Aliases) m_DriverNames.emplace(alias, it->Name);
      } else {
        const DrvXmlParser::EntryPlace& place = reader.EntryPlaces()[index];
        const std::string_view path = m_Trace->Keep(file.toString());
        m_DriverPlaces.try_emplace(it->Name, SourceLocation{path, place.Line, 0});
        const auto file = [&](const std::string& key, unsigned long line, bool alias) {
          const auto entry = m_DriverNames.emplace(key, it->Name);
          if (entry.second || entry.first->second == it->Name) return;
          m_Trace->Report(DiagnosticSeverity::Warning, DiagnosticKind::NameCollision,
                          {path, line, 0},
                          (alias ? "The alias " + Quoted(key) + " of " + Quoted(it->Name)
                                 : "The driver name " + Quoted(key)) +
                              " is already taken by " + Quoted(entry.first->second) + " (line " +
                              std::to_string(DriverPlace(entry.first->second).Line) +
                              "): it resolves to " + Quoted(entry.first->second) + ".",
                          key);
        };
        if (!m_DriverNames.emplace(it->Name, it->Name).second &&
            m_DriverNames[it->Name] == it->Name && DriverPlace(it->Name).Line != place.Line)
          m_Trace->Report(DiagnosticSeverity::Warning, DiagnosticKind::NameCollision,
                          {path, place.Line, 0},
                          "The driver " + Quoted(it->Name) +
                              " is declared a second time (first "
                              "on line " +
                              std::to_string(DriverPlace(it->Name).Line) +
                              "): its aliases still count, but its other settings do not.",
                          it->Name);
        else
          file(it->Name, place.Line, false);
        for (std::size_t a = 0; a < it->Aliases.size(); ++a)
          file(it->Aliases[a], a < place.AliasLines.size() ? place.AliasLines[a] : place.Line,
               true);
      }
      if (it->Implementation == "C") {
        m_NativeDrivers.push_back(it->Name);
        ++it;
      } else {
        m_OtherDrivers.push_back(it->Name);
        it = entries.erase(it);
      }
    }
  } catch (const QRError& error) {
    if ((error.Code() & ~3) == QRErrorCode::FileCannotRead) throw;
    ThrowQRError(QRErrorCode::StartupFailed);
  }
  return entries;
}

void ConfigManagerImpl::ListSetupFiles(const std::string& configDirectory,
                                       std::vector<std::string>& files) {
  const ConfigKeys& keys = ConfigKeys::Instance();
  files.clear();
  const std::string setupDirectory = JoinNative(configDirectory, keys.SetupDirectory);
  std::string extension;
  ReadSetting(keys.SetupFileExtension, extension, "the extension of setup files");
  const std::string skipPattern = ".32." + extension;

  std::vector<std::string> names;
  if (m_Trace != nullptr) {
    const std::string_view path = m_Trace->Keep(setupDirectory);
    if (!Poco::File(setupDirectory).exists())
      m_Trace->SetCause(DiagnosticKind::MissingFile, {path, 0, 0},
                        "The setup directory " + Quoted(setupDirectory) + " does not exist.");
    m_Trace->FileRead(FileRole::SetupDirectory, path);
  }
  Poco::File(setupDirectory).list(names);
  if (m_Trace != nullptr) m_Trace->ClearCause();
  m_SetupListed = true;
  for (const std::string& name : names) {
    if (name.find(skipPattern) != std::string::npos) {
      if (m_Trace != nullptr) {
        const std::string_view path = m_Trace->Keep(JoinNative(setupDirectory, name));
        m_Trace->FileSkipped(FileRole::SetupFile, path, "a 32-bit setup file");
        m_Trace->Report(DiagnosticSeverity::Note, DiagnosticKind::SetupSkipped, {path, 0, 0},
                        "The setup file is left out: a name holding \"" + skipPattern +
                            "\" marks a 32-bit setup file.",
                        name);
      }
      continue;
    }
    files.push_back(JoinNative(setupDirectory, name));
    if (m_Trace != nullptr && !EndsWith(name, "." + extension))
      m_Trace->Report(DiagnosticSeverity::Warning, DiagnosticKind::StraySetupFile,
                      {m_Trace->Keep(files.back()), 0, 0},
                      "The entry " + Quoted(name) +
                          " of the setup directory is read as a setup "
                          "file like every other entry, though its name does not end in \"." +
                          extension + "\" (an editor's backup, say).",
                      name);
  }
}

void ConfigManagerImpl::LoadDrivers(const std::vector<std::string>& setupFiles,
                                    const std::vector<DriverEntry>& drivers,
                                    const std::string& configDirectory,
                                    tree_node<Node>& driversDefaults,
                                    tree_node<Node>& activeDataSources, tree_node<Node>& dbDrivers,
                                    DsfXmlParser::DatabaseFields& databaseFields) {
  const ConfigKeys& keys = ConfigKeys::Instance();

  bool ignoreFailures = true;
  if (m_Mode != Initialization::Server) {
    try {
      ReadSetting(keys.IgnoreDriverLoadFailure, ignoreFailures,
                  "whether a failing driver is skipped in library mode");
    } catch (const QRError& error) {
      if (m_Trace == nullptr || !m_Trace->KeepGoing()) throw;
      // Keep going as if failures were not ignored, to report what each driver would meet.
      m_Trace->ReportFailure(error, DiagnosticSeverity::Error, {},
                             "The start-up fails (QRError 10).");
      m_Trace->RecordFailure(std::current_exception());
      ignoreFailures = false;
    }
  } else if (m_Trace != nullptr) {
    TraceServerModeFlag();
  }
  const bool filterActive = activeDataSources.ch_size() > 0;

  // Look-up tables of this call, so that loading is linear in the number of drivers: the
  // native driver names, and the first child of each name of DBDrivers and of the
  // ActiveDataSources node. They hold views of names that outlive the call.
  std::unordered_set<std::string_view> native;
  for (const DriverEntry& entry : drivers) native.insert(entry.Name);
  std::unordered_map<std::string_view, tree_node<Node>*> driverNodes = FirstChildren(dbDrivers);
  std::unordered_map<std::string_view, tree_node<Node>*> activeDrivers;
  if (filterActive && GetTree().Exists(ActiveDataSources()))
    activeDrivers = FirstChildren(GetTree().Find(ActiveDataSources()));
  const char separator = ActiveDataSources().separator();
  // With a trace: the first setup file of each driver read so far.
  std::unordered_map<std::string, std::string> setupOf;

  SetupXmlParser setup;
  setup.SetTrace(m_Trace);
  for (const std::string& setupFile : setupFiles) {
    try {
      setup.Parse(Poco::Path(setupFile));
      const std::string& driver = setup.NetworkLayerName();
      if (driver.empty()) {
        if (m_Trace != nullptr) TraceSetupSkipped(setup, DiagnosticKind::SetupNoDriver);
        continue;
      }
      if (native.count(driver) == 0) {
        if (m_Trace != nullptr) TraceSetupSkipped(setup, DiagnosticKind::UnknownDriver);
        continue;
      }
      const tree_node<Node>* activeDriver = nullptr;
      if (filterActive) {
        // A name holding the separator stands for several levels of the path.
        if (driver.find(separator) != std::string::npos) {
          const NodePath activePath(static_cast<const char*>(ActiveDataSources()), driver);
          if (GetTree().Exists(activePath)) activeDriver = &GetTree().Find(activePath);
        } else {
          const auto found = activeDrivers.find(driver);
          if (found != activeDrivers.end()) activeDriver = found->second;
        }
        if (activeDriver == nullptr) {
          if (m_Trace != nullptr) TraceSetupSkipped(setup, DiagnosticKind::DriverSkipped);
          continue;
        }
      }
      if (m_Trace != nullptr) {
        const auto first = setupOf.try_emplace(driver, setupFile);
        if (!first.second)
          m_Trace->Report(DiagnosticSeverity::Warning, DiagnosticKind::DuplicateSetup,
                          {setup.File(), setup.ResultPlaces().NetworkLayer, 0},
                          "This is a second setup file of " + Quoted(driver) + " (the first is " +
                              Quoted(first.first->second) +
                              "): its data-access file is read too, and its databases join the "
                              "driver's node after those of the first.",
                          driver);
      }

      tree_node<Node>* driverNode = nullptr;
      const auto known = driverNodes.find(driver);
      if (known != driverNodes.end()) {
        driverNode = known->second;
      } else {
        driverNode = &*dbDrivers.ch_push_back(Node(driver));
        driverNodes.emplace(driverNode->value().Name(), driverNode);
      }

      std::string dataExtension;
      ReadSetting(keys.ConfigFileExtension, dataExtension, "the extension of data-access files");
      Poco::Path dataFile(JoinNative(configDirectory, setup.Directory()));
      dataFile.makeDirectory();
      dataFile.setFileName(setup.DataFileName());
      dataFile.setExtension(dataExtension);

      std::map<std::string, std::string>& names = m_DatabaseNames[driver];
      DsfXmlParser reader(driversDefaults, *driverNode, names, setup, m_Trace);
      reader.RecordDatabaseFields(&databaseFields);
      if (filterActive) {
        std::vector<std::string> patterns;
        std::vector<SourceLocation> places;
        for (auto it = activeDriver->ch_begin(); it != activeDriver->ch_end(); ++it) {
          patterns.push_back((*it).value().Name());
          if (m_Trace != nullptr) places.push_back(m_Trace->NodeLocation((*it).value()));
        }
        reader.SetActiveDatabases(patterns, places);
      }
      if (m_Trace != nullptr && !Poco::File(dataFile).exists()) {
        // What the reader would meet; it is reported with the setup file's own lines.
        const SetupXmlParser::Places& places = setup.ResultPlaces();
        m_Trace->SetCause(
            DiagnosticKind::MissingDataFile,
            {setup.File(), places.DataFileName != 0 ? places.DataFileName : places.Directory, 0},
            "The setup file of " + Quoted(driver) + " names the data-access file " +
                Quoted(dataFile.toString()) + " (Directory " + Quoted(setup.Directory()) +
                ", DataFileName " + Quoted(setup.DataFileName()) + ", \"" +
                keys.ConfigFileExtension + "\" " + Quoted(dataExtension) +
                "), which does not exist (QRError 279).",
            setup.DataFileName());
        ThrowQRError(QRErrorCode::DataFileCannotRead, dataFile.toString());
      }
      reader.Parse(dataFile);
    } catch (const Quorin::QRError& error) {
      if (m_Trace != nullptr) {
        m_Trace->ReportFailure(
            error, ignoreFailures ? DiagnosticSeverity::Warning : DiagnosticSeverity::Error,
            {m_Trace->Keep(setupFile), 0, 0},
            ignoreFailures
                ? std::string("The loader gives up this setup file and goes on with the next; "
                              "what it had loaded stays.")
                : "The start-up fails (" +
                      std::string((error.Code() & ~3) == QRErrorCode::FileCannotRead
                                      ? "QRError " + std::to_string(error.Code())
                                      : std::string("QRError 10")) +
                      "), since \"" + keys.IgnoreDriverLoadFailure + "\" is not Yes.");
        if (!ignoreFailures && m_Trace->KeepGoing()) {
          m_Trace->RecordFailure(std::current_exception());
          continue;
        }
        if (!ignoreFailures) m_Trace->MarkReported();
      }
      if (!ignoreFailures) throw;
    }
  }
  // Without a listing of the setup directory, every driver would seem to lack its file.
  if (m_Trace != nullptr && m_SetupListed) TraceDriverCoverage(drivers, activeDataSources, setupOf);

  for (auto driver = dbDrivers.ch_begin(); driver != dbDrivers.ch_end(); ++driver)
    for (auto database = (*driver).ch_begin(); database != (*driver).ch_end(); ++database)
      ScanExtensions(*database, databaseFields.Of(*database));
}

void ConfigManagerImpl::ScanExtensions(tree_node<Node>& database, Field* const* first) {
  const ConfigKeys& keys = ConfigKeys::Instance();
  Node& node = database.value();

  std::string extensionList;
  if (!ReadText(FirstField(first, kExtensions, node, keys.Extensions), extensionList) ||
      extensionList.empty()) {
    if (m_Trace != nullptr && node.Exists(keys.Extensions) &&
        node.Find(keys.Extensions).ValueType() != Field::String) {
      const ValueOrigin* origin = m_Trace->OriginOf(node, keys.Extensions);
      m_Trace->Report(DiagnosticSeverity::Warning, DiagnosticKind::ValueType,
                      origin != nullptr ? origin->Where : m_Trace->NodeLocation(node),
                      "\"" + keys.Extensions + "\" of the database " + Quoted(node.Name()) +
                          " is " + LoadTrace::Describe(origin) +
                          ", not a text: extensions are looked for only in a text, so none is "
                          "found.",
                      keys.Extensions);
    }
    return;
  }
  const std::vector<std::string> extensions = SplitAtCommas(extensionList);

  std::string capabilities;
  ReadText(FirstField(first, kDriverCapabilities, node, keys.DriverCapabilities), capabilities);
  std::string configurationFile;
  if (m_Trace != nullptr && !node.Exists(keys.ConfigurationFile))
    m_Trace->SetCause(DiagnosticKind::MissingSetting, m_Trace->NodeLocation(node),
                      "The database node " + Quoted(node.Name()) + " has \"" + keys.Extensions +
                          "\" but no \"" + keys.ConfigurationFile +
                          "\" (it was not made by a data-access file): the extension scan fails "
                          "with QRError 261.",
                      keys.ConfigurationFile);
  const Field* configuration = FirstField(first, kConfigurationFile, node, keys.ConfigurationFile);
  (configuration != nullptr ? *configuration : node.Find(keys.ConfigurationFile))
      .Value(configurationFile);

  const Poco::Path directory(Poco::Path(configurationFile).parent(), "extensions");
  const Poco::File directoryFile(directory);
  if (!directoryFile.exists() || !directoryFile.isDirectory()) return;

  std::string markerExtension;
  ReadSetting(keys.SqlExternalExtension, markerExtension,
              "the extension of extension marker files");

  std::vector<Poco::File> packages;
  directoryFile.list(packages);
  for (const Poco::File& package : packages) {
    if (!package.isDirectory()) continue;
    for (const std::string& extension : extensions) {
      const std::string candidate = JoinNative(package.path(), extension + "." + markerExtension);
      if (!Poco::File(candidate).exists()) continue;
      const ValueOrigin* before =
          m_Trace != nullptr ? m_Trace->OriginOf(node, keys.DriverCapabilities) : nullptr;
      if (!capabilities.empty()) capabilities += ",";
      capabilities += "Repository";
      Field* updated = nullptr;
      try {
        Field& field = node.Find(keys.DriverCapabilities);
        field.Update(capabilities);
        updated = &field;
      } catch (const Quorin::Error&) {
        node.push_back(Field(keys.DriverCapabilities, capabilities));
        updated = &node.back();
        before = nullptr;
      }
      if (m_Trace != nullptr) {
        const std::string_view marker = m_Trace->Keep(candidate);
        m_Trace->FileRead(FileRole::ExtensionMarker, marker);
        m_Trace->SetOrigin(
            node, *updated,
            m_Trace->NewOrigin({marker, 0, 0}, "extension marker", capabilities, before));
      }
      return;
    }
  }
}

// --- Diagnostics.

void ConfigManagerImpl::TraceServerModeFlag() {
  const std::string& name = ConfigKeys::Instance().IgnoreDriverLoadFailure;
  const Node& settings = GetConstTree().Find(DBDrivers()).value();
  if (settings.Exists(name) && settings.Find(name).ValueType() == Field::Bool) return;
  const ValueOrigin* origin = settings.Exists(name) ? m_Trace->OriginOf(settings, name) : nullptr;
  m_Trace->Report(DiagnosticSeverity::Warning,
                  origin != nullptr ? DiagnosticKind::ValueType : DiagnosticKind::MissingSetting,
                  origin != nullptr ? origin->Where : m_Trace->NodeLocation(settings),
                  settings.Exists(name)
                      ? Quoted(name) + " is written as " + LoadTrace::Describe(origin) +
                            ", which is not a Yes/No value: server mode does not read it, but a "
                            "start-up in library mode fails with QRError 1."
                      : "<Settings> gives no parameter " + Quoted(name) +
                            ": server mode does not read it, but a start-up in library mode "
                            "fails with QRError 261.",
                  name);
}

void ConfigManagerImpl::TraceSetupSkipped(const SetupXmlParser& setup, DiagnosticKind kind) {
  const std::string& driver = setup.NetworkLayerName();
  const SourceLocation where{setup.File(), setup.ResultPlaces().NetworkLayer, 0};
  if (kind == DiagnosticKind::SetupNoDriver) {
    m_Trace->Report(DiagnosticSeverity::Warning, kind, where,
                    "The setup file names no driver (no <NetworkLayer> with a \"Name\"): the "
                    "loader skips it.");
    return;
  }
  if (kind == DiagnosticKind::DriverSkipped) {
    m_Trace->Report(DiagnosticSeverity::Note, kind, where,
                    "The active data sources " +
                        std::string(m_Mode == Initialization::Server
                                        ? "registered by the host"
                                        : "of the main file's <ActiveDataSources>") +
                        " name no database of " + Quoted(driver) +
                        ": the loader skips its setup file.",
                    driver);
    return;
  }
  for (const std::string& other : m_OtherDrivers) {
    if (other != driver) continue;
    m_Trace->Report(DiagnosticSeverity::Note, DiagnosticKind::NonNativeDriver, where,
                    "The setup file names " + Quoted(driver) +
                        ", which the driver list declares with another implementation than "
                        "\"C\": the library loads nothing from it.",
                    driver);
    return;
  }
  std::vector<std::string> names(m_NativeDrivers);
  names.insert(names.end(), m_OtherDrivers.begin(), m_OtherDrivers.end());
  const auto alias = m_DriverNames.find(driver);
  m_Trace->Report(DiagnosticSeverity::Warning, DiagnosticKind::UnknownDriver, where,
                  alias != m_DriverNames.end()
                      ? "The setup file names " + Quoted(driver) + ", an alias of " +
                            Quoted(alias->second) +
                            ": a setup file must name the driver itself, so the loader skips it."
                      : "The setup file names the driver " + Quoted(driver) +
                            ", which the driver list does not declare: the loader skips it.",
                  driver, 0, &names);
}

void ConfigManagerImpl::TraceDriverCoverage(
    const std::vector<DriverEntry>& drivers, const tree_node<Node>& activeDataSources,
    const std::unordered_map<std::string, std::string>& setupOf) {
  const bool filterActive = activeDataSources.ch_size() > 0;
  std::unordered_map<std::string_view, const tree_node<Node>*> active;
  for (auto it = activeDataSources.ch_begin(); it != activeDataSources.ch_end(); ++it)
    active.emplace((*it).value().Name(), &*it);
  for (const DriverEntry& entry : drivers) {
    if (setupOf.count(entry.Name) > 0 || (filterActive && active.count(entry.Name) == 0)) continue;
    m_Trace->Report(DiagnosticSeverity::Warning, DiagnosticKind::DriverWithoutSetup,
                    DriverPlace(entry.Name),
                    "No setup file of the setup directory names the native driver " +
                        Quoted(entry.Name) + ": it loads no database.",
                    entry.Name);
  }
  std::vector<std::string> names;
  for (const DriverEntry& entry : drivers) names.push_back(entry.Name);
  for (auto it = activeDataSources.ch_begin(); it != activeDataSources.ch_end(); ++it) {
    const std::string& name = (*it).value().Name();
    bool known = false;
    for (const DriverEntry& entry : drivers) known = known || entry.Name == name;
    if (known) continue;
    m_Trace->Report(DiagnosticSeverity::Warning, DiagnosticKind::UnknownDriver,
                    m_Trace->NodeLocation((*it).value()),
                    "The active data sources name the driver " + Quoted(name) +
                        ", which is not a native driver of the driver list: the entry has no "
                        "effect, and every driver that it does not name loads nothing.",
                    name, 0, &names);
  }
}
