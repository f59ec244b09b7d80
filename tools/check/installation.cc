#include "check/installation.h"

#include <algorithm>

#include <Poco/File.h>
#include <Poco/Path.h>

#include "check/xml_scanner.h"
#include "qr_config/config/manager/config_manager_impl.h"
#include "qr_config/config/readers/setup_xml_parser.h"
#include "qr_config/platform/qr_error.h"

namespace qrconfig {

namespace {

bool IsDirectory(const std::string& path) {
  try {
    Poco::File file(path);
    return file.exists() && file.isDirectory();
  } catch (const Poco::Exception&) {
    return false;
  }
}

bool IsReadableFile(const std::string& path) {
  try {
    Poco::File file(path);
    return file.exists() && !file.isDirectory();
  } catch (const Poco::Exception&) {
    return false;
  }
}

}  // namespace

Installation::Installation(std::string configDirectory, Initialization::Mode mode,
                           const std::vector<std::pair<std::string, std::string>>& activeSources)
    : m_ConfigDirectory(std::move(configDirectory)), m_Mode(mode) {
  ReadMainFile();
  CollectActiveSources(activeSources);
  ReadDriverList();
  ReadSetupEntries();
  ReadLocalisedFiles();
}

Installation::~Installation() = default;

std::string Installation::PathOf(const std::string& name) const {
  return JoinNative(m_ConfigDirectory, name);
}

std::optional<std::string> Installation::TextSetting(const std::string& name) const {
  const Node& settings = Settings();
  if (!settings.Exists(name)) return std::nullopt;
  const auto& field = settings.Find(name);
  if (field.ValueType() != ConfigManagerTypes::Field::String) return std::nullopt;
  std::string text;
  field.Value(text);
  return text;
}

bool Installation::IgnoresDriverFailures() const {
  if (m_Mode == Initialization::Server) return true;
  const Node& settings = Settings();
  if (!settings.Exists("Ignore Driver Load Failure")) return false;
  const auto& field = settings.Find("Ignore Driver Load Failure");
  bool ignore = false;
  if (field.ValueType() == ConfigManagerTypes::Field::Bool) field.Value(ignore);
  return ignore;
}

const std::vector<std::string>* Installation::PatternsOf(const std::string& driver) const {
  if (m_ActiveSources.empty()) return nullptr;
  auto entry = m_ActiveSources.find(driver);
  return entry == m_ActiveSources.end() ? nullptr : &entry->second;
}

const DriverEntry* Installation::FindDriver(const std::string& name) const {
  for (const DriverEntry& entry : m_Drivers) {
    if (entry.Name == name) return &entry;
  }
  return nullptr;
}

std::vector<const ScannedFile*> Installation::ScannedFiles() const {
  std::vector<const ScannedFile*> files{&m_MainFile, &m_DriverList};
  for (const SetupEntry& entry : m_SetupEntries) {
    if (!entry.Skipped) files.push_back(&entry.File);
  }
  for (const SetupEntry& entry : m_SetupEntries) {
    if (entry.DataFile) files.push_back(entry.DataFile.get());
  }
  for (const ScannedFile& file : m_LocalisedFiles) files.push_back(&file);
  return files;
}

void Installation::ReadMainFile() {
  const std::string path = PathOf("qr.cfg");
  m_MainFile = {FileKind::Main, XmlScanner::Scan(path)};

  m_Scratch = Node("Quorin");
  TreeNode& root = m_Scratch.root();
  m_DefaultsNode = &*root.ch_push_back(Node("Drivers defaults"));
  m_DBDriversNode = &*root.ch_push_back(Node("DBDrivers"));
  m_TracesNode = &*root.ch_push_back(Node("Traces"));
  m_ActiveNode = &*root.ch_push_back(Node("ActiveDataSources"));
  try {
    CfgXmlParser reader(m_Mode, &m_PlatformLocales, m_DefaultsNode, m_DBDriversNode, m_TracesNode,
                        m_ActiveNode);
    reader.Parse(Poco::Path(path));
  } catch (const QRError& error) {
    m_MainFileError = error.Code();
  } catch (const std::exception&) {
    m_MainFileError = QRErrorCode::StartupFailed;
  }
  // The start-up's fall-backs, behind whatever the main file gave.
  m_DefaultsNode->value().push_back(ConfigManagerTypes::Field("Status", std::int32_t{0}));
  m_DefaultsNode->value().push_back(ConfigManagerTypes::Field("Library Name", "Not Defined"));
}

void Installation::CollectActiveSources(
    const std::vector<std::pair<std::string, std::string>>& registered) {
  if (m_Mode == Initialization::Server) {
    // The registrations replace the main file's section; patterns in byte order, unique.
    std::map<std::string, std::vector<std::string>> sources;
    for (const auto& [driver, pattern] : registered) {
      std::vector<std::string>& patterns = sources[driver];
      if (std::find(patterns.begin(), patterns.end(), pattern) == patterns.end())
        patterns.push_back(pattern);
    }
    for (auto& [driver, patterns] : sources) std::sort(patterns.begin(), patterns.end());
    m_ActiveSources = std::move(sources);
    return;
  }
  for (auto driver = m_ActiveNode->ch_begin(); driver != m_ActiveNode->ch_end(); ++driver) {
    std::vector<std::string> patterns;
    for (auto source = (*driver).ch_begin(); source != (*driver).ch_end(); ++source)
      patterns.push_back((*source).value().Name());
    // The loader finds the first driver node of a name.
    m_ActiveSources.emplace((*driver).value().Name(), std::move(patterns));
  }
}

void Installation::ReadDriverList() {
  const std::string path = PathOf("driver.cfg");
  m_DriverList = {FileKind::DriverList, XmlScanner::Scan(path)};
  DrvXmlParser reader;
  try {
    reader.Parse(Poco::Path(path));
  } catch (const QRError&) {
    // The scan tells what is wrong; the entries read before the failure still help.
  }
  m_Drivers = reader.Entries();
}

void Installation::ReadSetupEntries() {
  m_SetupDirectory = PathOf("setup");
  std::vector<std::string> names;
  try {
    Poco::File(m_SetupDirectory).list(names);
    m_SetupListed = true;
  } catch (const Poco::Exception&) {
    return;
  }
  const std::optional<std::string> extension = TextSetting("Setup File Extension");
  const std::string skipPattern = extension ? ".32." + *extension : std::string();

  SetupXmlParser reader;  // one reader for every file, as the loader has
  for (const std::string& name : names) {
    SetupEntry entry;
    const std::string path = JoinNative(m_SetupDirectory, name);
    entry.File.Kind = FileKind::Setup;
    entry.File.Document.Path = path;
    entry.Skipped = !skipPattern.empty() && name.find(skipPattern) != std::string::npos;
    if (entry.Skipped) {
      m_SetupEntries.push_back(std::move(entry));
      continue;
    }
    entry.File.Document = XmlScanner::Scan(path);
    try {
      reader.Parse(Poco::Path(path));
      entry.Read = true;
    } catch (const QRError&) {
      entry.Read = false;
    }
    entry.Driver = reader.NetworkLayerName();
    entry.Directory = reader.Directory();
    entry.DataFileName = reader.DataFileName();
    entry.Versions = reader.Versions();
    entry.KnownDriver = FindDriver(entry.Driver) != nullptr;
    entry.NativeDriver = std::any_of(m_Drivers.begin(), m_Drivers.end(), [&](const DriverEntry& d) {
      return d.Name == entry.Driver && d.Implementation == DrvXmlParser::NativeImplementation();
    });
    entry.ActiveDriver = m_ActiveSources.empty() || m_ActiveSources.count(entry.Driver) > 0;
    if (entry.Read && !entry.Driver.empty() && entry.NativeDriver && entry.ActiveDriver)
      ReadDataFile(entry);
    m_SetupEntries.push_back(std::move(entry));
  }
}

void Installation::ReadDataFile(SetupEntry& entry) {
  const std::optional<std::string> extension = TextSetting("Config File Extension");
  if (!extension) return;
  Poco::Path path(JoinNative(m_ConfigDirectory, entry.Directory));
  path.makeDirectory();
  path.setFileName(entry.DataFileName);
  path.setExtension(*extension);
  entry.DataFilePath = path.toString();
  entry.DataFileExists = IsReadableFile(entry.DataFilePath);
  if (!entry.DataFileExists) return;
  entry.DataFile = std::make_unique<ScannedFile>(
      ScannedFile{FileKind::DataAccess, XmlScanner::Scan(entry.DataFilePath)});
  entry.Model = std::make_unique<DataAccessModel>(entry.DataFile->Document, DriversDefaults(),
                                                  entry.DataFilePath, entry.Directory,
                                                  entry.Versions, PatternsOf(entry.Driver));
}

void Installation::ReadLocalisedFiles() {
  std::vector<std::string> names;
  try {
    Poco::File(m_ConfigDirectory).list(names);
  } catch (const Poco::Exception&) {
    return;
  }
  std::sort(names.begin(), names.end());
  for (const std::string& name : names) {
    const bool localised = name.size() > 10 && name.compare(0, 6, "driver") == 0 &&
                           name.compare(name.size() - 4, 4, ".cfg") == 0;
    if (!localised || IsDirectory(PathOf(name))) continue;
    m_LocalisedFiles.push_back({FileKind::Localised, XmlScanner::Scan(PathOf(name))});
  }
}

}  // namespace qrconfig
