// The start-up sequence and the lookups of ConfigManagerImpl. Driver loading, character-set
// tables and localisation live in their own files.
#include "qr_config/config/manager/config_manager_impl.h"

#include <Poco/Path.h>

#include "qr_config/config/manager/config_keys.h"
#include "qr_config/config/readers/cfg_xml_parser.h"
#include "qr_config/platform/process.h"
#include "qr_config/platform/qr_error.h"
#include "qr_config/platform/registry.h"

namespace {

// The file codes 264 to 267 reach the host unchanged; every other code of the library means
// "the configuration could not be loaded".
bool IsFileCode(std::int32_t code) {
  return (code & ~3) == QRErrorCode::FileCannotRead;
}

// Destroys the key table when the start-up fails after creating it, so that a later
// Initialize on repaired files can succeed.
class KeyTableGuard {
 public:
  KeyTableGuard() { ConfigKeys::Create(); }
  ~KeyTableGuard() {
    if (m_Armed) ConfigKeys::Destroy();
  }
  void Release() { m_Armed = false; }
  KeyTableGuard(const KeyTableGuard&) = delete;
  KeyTableGuard& operator=(const KeyTableGuard&) = delete;

 private:
  bool m_Armed = true;
};

}  // namespace

std::string JoinNative(const std::string& parent, const std::string& child) {
  std::string joined;
  joined.reserve(parent.size() + 1 + child.size());
  joined += parent;
  joined += Poco::Path::separator();
  joined += child;
  return joined;
}

ConfigManagerImpl::ConfigManagerImpl(Initialization::Mode mode) : m_Mode(mode) {
  try {
    KeyTableGuard keyTable;
    RunStartup();
    keyTable.Release();
  } catch (const QRError& error) {
    if (IsFileCode(error.Code())) throw;
    ThrowQRError(QRErrorCode::StartupFailed);
  }
}

ConfigManagerImpl::~ConfigManagerImpl() {
  ConfigKeys::Destroy();
}

std::string ConfigManagerImpl::ConfigDirectory() const {
  std::string directory;
  m_Tree.root().value().Find(ConfigKeys::Instance().ConfigDirectory).Value(directory);
  return directory;
}

void ConfigManagerImpl::RunStartup() {
  const ConfigKeys& keys = ConfigKeys::Instance();
  Node& rootNode = m_Tree.root().value();

  // Registry parameters become text fields of the root, in name order.
  {
    Registry registry;
    for (const auto& [name, parameter] : registry.Parameters()) {
      std::string text;
      parameter.Value(text);
      rootNode.push_back(Field(name, text));
    }
  }
  const std::string configDirectory = ConfigDirectory();
  const Poco::Path mainFile = ConfigFilePath(configDirectory);

  std::vector<DriverEntry> drivers;
  ReadDriverList(drivers, configDirectory);

  tree_node<Node>& root = m_Tree.root();
  const tree_node_ch_iter<Node> defaultsIt = root.ch_push_back(Node(keys.DriversDefaults));
  tree_node<Node>& driversDefaults = *defaultsIt;
  tree_node<Node>& dbDrivers = *root.ch_push_back(Node(keys.DBDrivers));
  tree_node<Node>& traces = *root.ch_push_back(Node(keys.Traces));
  tree_node<Node>& activeDataSources = *root.ch_push_back(Node(keys.ActiveDataSources));

  {
    CfgXmlParser mainReader(m_Mode, &m_PlatformLocales, &driversDefaults, &dbDrivers, &traces,
                            &activeDataSources);
    mainReader.Parse(mainFile);
  }

  const std::string platformList =
      Poco::Path(Poco::Path(configDirectory), keys.PlatformFile).toString();
  m_PlatformCharSets = ReadCharSetList(platformList, Process::Instance().Name());

  // Fall-backs behind whatever the main file gave: every database node merges them last.
  driversDefaults.value().push_back(Field("Status", std::int32_t{0}));
  driversDefaults.value().push_back(Field("Library Name", "Not Defined"));

  ApplyActiveDataSources(activeDataSources);

  std::vector<std::string> setupFiles;
  ListSetupFiles(configDirectory, setupFiles);
  LoadDrivers(setupFiles, drivers, configDirectory, driversDefaults, activeDataSources, dbDrivers);

  m_Locales = GetPlatformLocales(Process::Instance().Name());

  tree_node<Node>& localization = *root.ch_push_back(Node(keys.Localization));
  for (auto it = dbDrivers.ch_begin(); it != dbDrivers.ch_end(); ++it)
    localization.ch_push_back(Node((*it).value().Name()));

  BuildCharSetTables(configDirectory, dbDrivers);

  root.ch_erase(defaultsIt);
}

void ConfigManagerImpl::ApplyActiveDataSources(tree_node<Node>& activeDataSources) {
  if (m_Mode != Initialization::Server) return;
  while (activeDataSources.ch_size() > 0) activeDataSources.ch_erase(activeDataSources.ch_begin());
  for (const auto& [driver, dataSources] : GetActiveDataSourceConfig()) {
    tree_node<Node>& driverNode = *activeDataSources.ch_push_back(Node(driver));
    for (const std::string& dataSource : dataSources) driverNode.ch_push_back(Node(dataSource));
  }
}

const std::string& ConfigManagerImpl::ResolveDatabaseName(const std::string& driver,
                                                          const std::string& name) {
  auto table = m_DatabaseNames.find(driver);
  if (table == m_DatabaseNames.end()) ThrowQRError(QRErrorCode::UnknownDriver, driver);
  auto entry = table->second.find(name);
  if (entry == table->second.end()) ThrowQRError(QRErrorCode::UnknownDatabase, name);
  return entry->second;
}

const std::string& ConfigManagerImpl::ResolveDriverName(const std::string& name) {
  auto entry = m_DriverNames.find(name);
  if (entry == m_DriverNames.end()) ThrowQRError(QRErrorCode::UnknownDriver, name);
  return entry->second;
}

std::map<std::string, std::string>& ConfigManagerImpl::GetDatabaseNames(const std::string& driver) {
  auto table = m_DatabaseNames.find(driver);
  if (table == m_DatabaseNames.end()) ThrowQRError(QRErrorCode::UnknownDriver, driver);
  return table->second;
}

std::map<std::string, Quorin::LocaleDescriptor>& ConfigManagerImpl::GetPlatformLocales(
    const std::string& platform) {
  auto table = m_PlatformLocales.find(platform);
  if (table == m_PlatformLocales.end()) ThrowQRError(QRErrorCode::UnknownPlatform, platform);
  return table->second;
}

const std::string& ConfigManagerImpl::GetPlatformCharSet(const std::string& name) {
  if (m_PlatformCharSets) {
    auto entry = m_PlatformCharSets->find(name);
    if (entry != m_PlatformCharSets->end()) return entry->second;
  }
  ThrowQRError(QRErrorCode::NoCharSetEntry, name);
}

const std::string& ConfigManagerImpl::GetCharSetTableEntry(const std::string& driver,
                                                           const std::string& database,
                                                           const std::string& name) {
  auto table = m_CharSetTables.find(CharSetKey{driver, m_KeySeparator, database});
  if (table == m_CharSetTables.end()) ThrowQRError(QRErrorCode::NoCharSetTable, driver);
  auto entry = table->second->find(name);
  if (entry == table->second->end()) ThrowQRError(QRErrorCode::NoCharSetEntry, name);
  return entry->second;
}

int ConfigManagerImpl::CharSetKeyLess::Compare(std::string_view key, const CharSetKey& parts) {
  for (std::string_view part : {parts.Driver, parts.Separator, parts.Database}) {
    const std::string_view head = key.substr(0, part.size());
    if (int order = head.compare(part)) return order;
    if (head.size() < part.size()) return -1;
    key.remove_prefix(part.size());
  }
  return key.empty() ? 0 : 1;
}
