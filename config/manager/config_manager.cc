#include "qr_config/config/manager/config_manager.h"

#include <memory>

#include "qr_config/config/manager/config_keys.h"
#include "qr_config/config/manager/config_manager_impl.h"
#include "qr_config/config/manager/config_startup.h"
#include "qr_config/platform/qr_error.h"

ConfigManager* ConfigManager::m_ConfigManager = nullptr;

ConfigManager::ConfigManager()
    : m_Tree("Quorin"),
      m_Root("\\Quorin"),
      m_Distribution("\\Quorin\\Distribution"),
      m_Traces("\\Quorin\\Traces"),
      m_DBDrivers("\\Quorin\\DBDrivers"),
      m_Localization("\\Quorin\\Localization"),
      m_ActiveDataSources("\\Quorin\\ActiveDataSources") {}

ConfigManager::~ConfigManager() = default;

ConfigManager& ConfigManager::Instance() {
  if (m_ConfigManager == nullptr) ThrowQRError(QRErrorCode::NotInitialized);
  return *m_ConfigManager;
}

void ConfigManager::Initialize(Initialization::Mode mode, LoadObserver* observer) {
  if (m_ConfigManager != nullptr) ThrowQRError(QRErrorCode::AlreadyInitialized);
  // Published only once the whole start-up has succeeded.
  auto manager = std::make_unique<ConfigManagerImpl>(mode, observer);
  m_ConfigManager = manager.release();
}

void ConfigManager::Destroy() noexcept {
  delete m_ConfigManager;
  m_ConfigManager = nullptr;
}

Poco::Path ConfigManager::ConfigFilePath(const std::string& configDirectory) {
  const ConfigKeys& keys = ConfigKeys::Instance();
  return Poco::Path(Poco::Path(configDirectory), keys.MainFileName);
}

std::map<std::string, std::set<std::string>>& ConfigManager::GetActiveDataSourceConfig() {
  // A function-local static: registrations may come from hosts' static initialisers.
  static std::map<std::string, std::set<std::string>> registrations;
  return registrations;
}

void ConfigManager::AddActiveDataSource(const std::string& driver, const std::string& dataSource) {
  if (driver.empty() || dataSource.empty()) return;
  GetActiveDataSourceConfig()[driver].insert(dataSource);
}

void ConfigStartup::Initialize(Initialization::Mode mode) {
  ConfigManager::Initialize(mode);
}

void ConfigStartup::Initialize(Initialization::Mode mode, LoadObserver& observer) {
  ConfigManager::Initialize(mode, &observer);
}

void ConfigStartup::Destroy() noexcept {
  ConfigManager::Destroy();
}
