// The platform character-set list and the character-set tables of databases.
#include <Poco/Path.h>

#include "qr_config/config/manager/config_keys.h"
#include "qr_config/config/manager/config_manager_impl.h"
#include "qr_config/platform/process.h"
#include "qr_config/platform/qr_error.h"
#include "qr_config/platform/sfile.h"

namespace {

// The library asks SFile to read the file and to type its values.
constexpr int kSFileReadTyped = 3;

// Translates a failure of the parameter-file reader into the library's codes.
[[noreturn]] void RethrowAsQRError(const SFile::Exception& error) {
  switch (error.Kind()) {
    case 1:
    case 2:
      ThrowQRError(QRErrorCode::MissingField);
    case 0:
      ThrowQRError(QRErrorCode::NodeNotFound);
    case 3:
      ThrowQRError(QRErrorCode::TypeMismatch);
    default:
      ThrowQRError(QRErrorCode::StartupFailed);
  }
}

}  // namespace

ConfigManagerImpl::CharSetListPtr ConfigManagerImpl::ReadCharSetList(const std::string& baseName,
                                                                     const std::string& section) {
  std::string extension;
  GetTree()
      .Find(DBDrivers())
      .value()
      .Find(ConfigKeys::Instance().CharSetListExtension)
      .Value(extension);
  try {
    const SFile file(baseName + "." + extension, kSFileReadTyped);
    const std::map<std::string, SFile::Parameter>* parameters = file.FindSection(section);
    for (auto name = Process::Instance().PlatformNames().begin();
         parameters == nullptr && name != Process::Instance().PlatformNames().end(); ++name)
      parameters = file.FindSection(*name);
    if (parameters == nullptr) ThrowQRError(QRErrorCode::MissingField);

    auto list = std::make_shared<CharSetList>();
    for (const auto& entry : *parameters) {
      std::string text;
      entry.second.Value(text);
      list->emplace(entry.second.Name(), std::move(text));
    }
    return list;
  } catch (const SFile::Exception& error) {
    RethrowAsQRError(error);
  }
}

void ConfigManagerImpl::BuildCharSetTables(const std::string& configDirectory,
                                           tree_node<Node>& dbDrivers) {
  const ConfigKeys& keys = ConfigKeys::Instance();
  std::map<std::string, std::string> tablePaths;      // key to file base name
  std::map<std::string, CharSetListPtr> loadedLists;  // file base name to list

  for (auto driver = dbDrivers.ch_begin(); driver != dbDrivers.ch_end(); ++driver) {
    for (auto database = (*driver).ch_begin(); database != (*driver).ch_end(); ++database) {
      const Node& node = (*database).value();
      std::string directory;
      try {
        node.Find(keys.Directory).Value(directory);
      } catch (...) {
        ThrowQRError(QRErrorCode::MissingField);
      }
      directory = JoinNative(configDirectory, directory);

      std::string unicode = keys.CharSet;
      try {
        node.Find(keys.Unicode).Value(unicode);
      } catch (const Quorin::Error&) {
        unicode = keys.CharSet;
      }
      if (unicode != keys.CharSet) continue;

      try {
        std::string tableName;
        node.Find(keys.CharSetTable).Value(tableName);
        const std::string baseName = Poco::Path(Poco::Path(directory), tableName).toString();
        tablePaths.emplace((*driver).value().Name() + m_KeySeparator + node.Name(), baseName);
        if (loadedLists.find(baseName) == loadedLists.end())
          loadedLists.emplace(baseName, ReadCharSetList(baseName, keys.CharSets));
      } catch (...) {
        // This database simply gets no table; a later one naming the same file tries again.
      }
    }
  }

  m_CharSetTables.clear();
  for (const auto& [key, baseName] : tablePaths) {
    auto list = loadedLists.find(baseName);
    if (list != loadedLists.end()) m_CharSetTables.emplace(key, list->second);
  }
}
