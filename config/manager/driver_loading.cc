// Driver discovery and loading: the driver list, the setup files, each loadable driver's
// data-access file, and the extension markers of its databases.
#include <Poco/File.h>
#include <Poco/Path.h>

#include <string_view>
#include <unordered_map>
#include <unordered_set>

#include "qr_config/config/manager/config_keys.h"
#include "qr_config/config/manager/config_manager_impl.h"
#include "qr_config/config/readers/dsf_xml_parser.h"
#include "qr_config/config/readers/setup_xml_parser.h"
#include "qr_config/platform/qr_error.h"

namespace {

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

// Reads the text value of `name` on `node`; false when the field is missing or not a text.
bool ReadText(const ConfigManager::Node& node, const std::string& name, std::string& out) {
  if (!node.Exists(name)) return false;
  const ConfigManager::Field& field = node.Find(name);
  if (field.ValueType() != ConfigManager::Field::String) return false;
  field.Value(out);
  return true;
}

}  // namespace

std::vector<DriverEntry>& ConfigManagerImpl::ReadDriverList(std::vector<DriverEntry>& entries,
                                                            const std::string& configDirectory) {
  const Poco::Path file(Poco::Path(configDirectory), ConfigKeys::Instance().DriverListFile);
  if (!Poco::File(file).exists()) ThrowQRError(QRErrorCode::FileCannotRead, file.toString());
  try {
    DrvXmlParser reader;
    reader.Parse(file);
    entries = reader.Entries();
    for (auto it = entries.begin(); it != entries.end();) {
      m_DriverNames.emplace(it->Name, it->Name);
      for (const std::string& alias : it->Aliases) m_DriverNames.emplace(alias, it->Name);
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
  GetConstTree().Find(DBDrivers()).value().Find(keys.SetupFileExtension).Value(extension);
  const std::string skipPattern = ".32." + extension;

  std::vector<std::string> names;
  Poco::File(setupDirectory).list(names);
  for (const std::string& name : names) {
    if (name.find(skipPattern) != std::string::npos) continue;
    files.push_back(JoinNative(setupDirectory, name));
  }
}

void ConfigManagerImpl::LoadDrivers(const std::vector<std::string>& setupFiles,
                                    const std::vector<DriverEntry>& drivers,
                                    const std::string& configDirectory,
                                    tree_node<Node>& driversDefaults,
                                    tree_node<Node>& activeDataSources,
                                    tree_node<Node>& dbDrivers) {
  const ConfigKeys& keys = ConfigKeys::Instance();
  const Node& dbDriversNode = GetTree().Find(DBDrivers()).value();

  bool ignoreFailures = true;
  if (m_Mode != Initialization::Server)
    dbDriversNode.Find(keys.IgnoreDriverLoadFailure).Value(ignoreFailures);
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

  SetupXmlParser setup;
  for (const std::string& setupFile : setupFiles) {
    try {
      setup.Parse(Poco::Path(setupFile));
      const std::string& driver = setup.NetworkLayerName();
      if (driver.empty()) continue;
      if (native.count(driver) == 0) continue;
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
        if (activeDriver == nullptr) continue;
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
      dbDriversNode.Find(keys.ConfigFileExtension).Value(dataExtension);
      Poco::Path dataFile(JoinNative(configDirectory, setup.Directory()));
      dataFile.makeDirectory();
      dataFile.setFileName(setup.DataFileName());
      dataFile.setExtension(dataExtension);

      std::map<std::string, std::string>& names = m_DatabaseNames[driver];
      DsfXmlParser reader(driversDefaults, *driverNode, names, setup);
      if (filterActive) {
        std::vector<std::string> patterns;
        for (auto it = activeDriver->ch_begin(); it != activeDriver->ch_end(); ++it)
          patterns.push_back((*it).value().Name());
        reader.SetActiveDatabases(patterns);
      }
      reader.Parse(dataFile);
    } catch (const Quorin::QRError&) {
      if (!ignoreFailures) throw;
    }
  }

  for (auto driver = dbDrivers.ch_begin(); driver != dbDrivers.ch_end(); ++driver)
    for (auto database = (*driver).ch_begin(); database != (*driver).ch_end(); ++database)
      ScanExtensions(*database);
}

void ConfigManagerImpl::ScanExtensions(tree_node<Node>& database) {
  const ConfigKeys& keys = ConfigKeys::Instance();
  Node& node = database.value();

  std::string extensionList;
  if (!ReadText(node, keys.Extensions, extensionList) || extensionList.empty()) return;
  const std::vector<std::string> extensions = SplitAtCommas(extensionList);

  std::string capabilities;
  ReadText(node, keys.DriverCapabilities, capabilities);
  std::string configurationFile;
  node.Find(keys.ConfigurationFile).Value(configurationFile);

  const Poco::Path directory(Poco::Path(configurationFile).parent(), "extensions");
  const Poco::File directoryFile(directory);
  if (!directoryFile.exists() || !directoryFile.isDirectory()) return;

  std::string markerExtension;
  GetTree().Find(DBDrivers()).value().Find(keys.SqlExternalExtension).Value(markerExtension);

  std::vector<Poco::File> packages;
  directoryFile.list(packages);
  for (const Poco::File& package : packages) {
    if (!package.isDirectory()) continue;
    for (const std::string& extension : extensions) {
      const std::string candidate = JoinNative(package.path(), extension + "." + markerExtension);
      if (!Poco::File(candidate).exists()) continue;
      if (!capabilities.empty()) capabilities += ",";
      capabilities += "Repository";
      try {
        node.Find(keys.DriverCapabilities).Update(capabilities);
      } catch (const Quorin::Error&) {
        node.push_back(Field(keys.DriverCapabilities, capabilities));
      }
      return;
    }
  }
}
