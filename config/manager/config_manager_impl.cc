// The start-up sequence and the lookups of ConfigManagerImpl. Driver loading, character-set
// tables and localisation live in their own files.
#include "qr_config/config/manager/config_manager_impl.h"

#include <Poco/Path.h>

#include <memory>
#include <type_traits>

#include "qr_config/config/manager/config_keys.h"
#include "qr_config/config/readers/cfg_xml_parser.h"
#include "qr_config/config/readers/load_trace.h"
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

ConfigManagerImpl::ConfigManagerImpl(Initialization::Mode mode, LoadObserver* observer)
    : m_Mode(mode) {
  std::unique_ptr<LoadTrace> trace;
  if (observer != nullptr) trace = std::make_unique<LoadTrace>(*observer);
  m_Trace = trace.get();
  try {
    KeyTableGuard keyTable;
    if (m_Trace != nullptr) {
      // The fields of a database that the start-up reads after the readers: their origins
      // place its later diagnostics.
      const ConfigKeys& keys = ConfigKeys::Instance();
      m_Trace->SetLaterReads({keys.Directory, keys.Unicode, keys.CharSetTable, keys.Extensions,
                              keys.DriverCapabilities, keys.ConfigurationFile});
    }
    RunStartup();
    keyTable.Release();
  } catch (const QRError& error) {
    m_Trace = nullptr;
    if (IsFileCode(error.Code())) throw;
    ThrowQRError(QRErrorCode::StartupFailed);
  } catch (...) {
    m_Trace = nullptr;
    throw;
  }
  m_Trace = nullptr;
  m_DriverPlaces.clear();
}

ConfigManagerImpl::~ConfigManagerImpl() {
  ConfigKeys::Destroy();
}

std::string ConfigManagerImpl::ConfigDirectory() const {
  std::string directory;
  m_Tree.root().value().Find(ConfigKeys::Instance().ConfigDirectory).Value(directory);
  return directory;
}

SourceLocation ConfigManagerImpl::DriverPlace(const std::string& driver) const {
  auto place = m_DriverPlaces.find(driver);
  return place == m_DriverPlaces.end() ? SourceLocation{} : place->second;
}

template <typename Work>
bool ConfigManagerImpl::Step(Work&& work) {
  if (m_Trace == nullptr) {
    work();
    return true;
  }
  std::exception_ptr failure;
  try {
    work();
    return true;
  } catch (...) {
    failure = std::current_exception();
  }
  if (m_Trace->ConsumeReported()) {
    m_Trace->ClearCause();
  } else {
    ReportStepFailure(failure);
  }
  if (!m_Trace->KeepGoing()) std::rethrow_exception(failure);
  m_Trace->RecordFailure(failure);
  return false;
}

void ConfigManagerImpl::ReportStepFailure(const std::exception_ptr& failure) {
  try {
    std::rethrow_exception(failure);
  } catch (const std::exception& error) {
    const auto* qrError = dynamic_cast<const QRError*>(&error);
    m_Trace->ReportFailure(
        error, DiagnosticSeverity::Error, {},
        qrError == nullptr ? "The start-up fails with this exception."
        : IsFileCode(qrError->Code())
            ? "The start-up fails with QRError " + std::to_string(qrError->Code()) + "."
            : std::string("The start-up fails (QRError 10)."));
  } catch (...) {
    m_Trace->Report(DiagnosticSeverity::Error, DiagnosticKind::LoadFailure, {},
                    "An exception of an unknown type ends the start-up.");
  }
}

template <typename T>
void ConfigManagerImpl::ReadSetting(const std::string& name, T& out, const char* role) {
  const Node& settings = GetConstTree().Find(DBDrivers()).value();
  if (m_Trace != nullptr) {
    if (!settings.Exists(name)) {
      const SourceLocation where = m_Trace->NodeLocation(settings);
      m_Trace->SetCause(DiagnosticKind::MissingSetting, where,
                        "<Settings> gives no parameter \"" + name + "\" (" + role +
                            "), which the start-up reads: it fails with QRError 261.",
                        name);
    } else {
      const Field& field = settings.Find(name);
      T probe{};
      try {
        field.Value(probe);
      } catch (const QRError&) {
        const ValueOrigin* origin = m_Trace->OriginOf(settings, field);
        m_Trace->SetCause(
            DiagnosticKind::ValueType,
            origin != nullptr ? origin->Where : m_Trace->NodeLocation(settings),
            "\"" + name + "\" is written as " + LoadTrace::Describe(origin) + ", which is not a " +
                (std::is_same<T, bool>::value ? "Yes/No value" : "text") +
                "; the start-up reads it as one (" + role + ") and fails with QRError 1.",
            name);
      }
    }
  }
  settings.Find(name).Value(out);
  if (m_Trace != nullptr) m_Trace->ClearCause();
}

template void ConfigManagerImpl::ReadSetting<std::string>(const std::string&, std::string&,
                                                          const char*);
template void ConfigManagerImpl::ReadSetting<bool>(const std::string&, bool&, const char*);

void ConfigManagerImpl::RunStartup() {
  if (m_Trace == nullptr) {
    RunSteps();
    return;
  }
  try {
    RunSteps();
  } catch (...) {
    m_Trace->RecordFailure(std::current_exception());
  }
  m_Trace->ReportValues(m_Tree.root());
  if (m_Trace->FirstFailure()) std::rethrow_exception(m_Trace->FirstFailure());
}

void ConfigManagerImpl::RunSteps() {
  const ConfigKeys& keys = ConfigKeys::Instance();
  Node& rootNode = m_Tree.root().value();

  // Registry parameters become text fields of the root, in name order.
  {
    Registry registry;
    for (const auto& [name, parameter] : registry.Parameters()) {
      std::string text;
      parameter.Value(text);
      if (rootNode.push_back(Field(name, text)) && m_Trace != nullptr)
        m_Trace->SetOrigin(rootNode, rootNode.back(),
                           m_Trace->NewOrigin({}, "registry parameter", text));
    }
  }
  std::string configDirectory;
  const bool located = Step([&] {
    if (m_Trace != nullptr)
      m_Trace->SetCause(DiagnosticKind::MissingSetting, {},
                        "The registry parameter \"" + keys.ConfigDirectory +
                            "\" is missing or not a text: the library does not know where the "
                            "configuration is.",
                        keys.ConfigDirectory);
    configDirectory = ConfigDirectory();
    if (m_Trace != nullptr) m_Trace->ClearCause();
  });
  if (!located) return;
  const Poco::Path mainFile = ConfigFilePath(configDirectory);

  std::vector<DriverEntry> drivers;
  Step([&] { ReadDriverList(drivers, configDirectory); });

  tree_node<Node>& root = m_Tree.root();
  const tree_node_ch_iter<Node> defaultsIt = root.ch_push_back(Node(keys.DriversDefaults));
  tree_node<Node>& driversDefaults = *defaultsIt;
  tree_node<Node>& dbDrivers = *root.ch_push_back(Node(keys.DBDrivers));
  tree_node<Node>& traces = *root.ch_push_back(Node(keys.Traces));
  tree_node<Node>& activeDataSources = *root.ch_push_back(Node(keys.ActiveDataSources));

  Step([&] {
    CfgXmlParser mainReader(m_Mode, &m_PlatformLocales, &driversDefaults, &dbDrivers, &traces,
                            &activeDataSources);
    mainReader.SetTrace(m_Trace);
    mainReader.Parse(mainFile);
  });

  Step([&] {
    const std::string platformList =
        Poco::Path(Poco::Path(configDirectory), keys.PlatformFile).toString();
    m_PlatformCharSets =
        ReadCharSetList(platformList, Process::Instance().Name(), FileRole::PlatformCharSetList);
  });

  // Fall-backs behind whatever the main file gave: every database node merges them last.
  Node& defaults = driversDefaults.value();
  if (defaults.push_back(Field("Status", std::int32_t{0})) && m_Trace != nullptr)
    m_Trace->SetOrigin(defaults, defaults.back(),
                       m_Trace->NewOrigin({}, "start-up fall-back", "0"));
  if (defaults.push_back(Field("Library Name", "Not Defined")) && m_Trace != nullptr)
    m_Trace->SetOrigin(defaults, defaults.back(),
                       m_Trace->NewOrigin({}, "start-up fall-back", "Not Defined"));

  ApplyActiveDataSources(activeDataSources);

  std::vector<std::string> setupFiles;
  Step([&] { ListSetupFiles(configDirectory, setupFiles); });
  DsfXmlParser::DatabaseFields databaseFields = DatabaseFieldTable();
  Step([&] {
    LoadDrivers(setupFiles, drivers, configDirectory, driversDefaults, activeDataSources, dbDrivers,
                databaseFields);
  });

  Step([&] {
    const std::string& platform = Process::Instance().Name();
    if (m_Trace != nullptr && m_PlatformLocales.count(platform) == 0) {
      std::string families;
      for (const std::string& name : Process::Instance().PlatformNames())
        families += (families.empty() ? "" : ", ") + name;
      m_Trace->SetCause(DiagnosticKind::NoLocale, {m_Trace->Keep(mainFile.toString()), 0, 0},
                        "No <Locale> of the main file gives a character set for the platform \"" +
                            platform +
                            "\" (a <CharSet> counts when its Platform is empty or one "
                            "of " +
                            families + "): the start-up fails with QRError 268.",
                        platform);
    }
    m_Locales = GetPlatformLocales(platform);
  });

  tree_node<Node>& localization = *root.ch_push_back(Node(keys.Localization));
  for (auto it = dbDrivers.ch_begin(); it != dbDrivers.ch_end(); ++it)
    localization.ch_push_back(Node((*it).value().Name()));

  Step([&] { BuildCharSetTables(configDirectory, dbDrivers, databaseFields); });
  if (m_Trace != nullptr && m_Trace->WantsOnDemandFiles())
    Step([&] { CheckLocalizedFiles(configDirectory); });

  if (m_Trace != nullptr) m_Trace->ForgetSubtree(driversDefaults);
  root.ch_erase(defaultsIt);
}

DsfXmlParser::DatabaseFields ConfigManagerImpl::DatabaseFieldTable() {
  const ConfigKeys& keys = ConfigKeys::Instance();
  return DsfXmlParser::DatabaseFields({&keys.Extensions, &keys.DriverCapabilities,
                                       &keys.ConfigurationFile, &keys.Directory, &keys.Unicode,
                                       &keys.CharSetTable});
}

void ConfigManagerImpl::ApplyActiveDataSources(tree_node<Node>& activeDataSources) {
  if (m_Mode != Initialization::Server) return;
  while (activeDataSources.ch_size() > 0) {
    if (m_Trace != nullptr) m_Trace->ForgetSubtree(*activeDataSources.ch_begin());
    activeDataSources.ch_erase(activeDataSources.ch_begin());
  }
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
