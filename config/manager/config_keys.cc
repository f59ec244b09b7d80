#include "qr_config/config/manager/config_keys.h"

#include "qr_config/platform/qr_error.h"

std::unique_ptr<ConfigKeys> ConfigKeys::m_Instance;

void ConfigKeys::Create() {
  if (m_Instance) ThrowQRError(QRErrorCode::AlreadyInitialized);
  m_Instance.reset(new ConfigKeys());
}

const ConfigKeys& ConfigKeys::Instance() {
  if (!m_Instance) ThrowQRError(QRErrorCode::NotInitialized);
  return *m_Instance;
}

void ConfigKeys::Destroy() noexcept {
  m_Instance.reset();
}

bool ConfigKeys::Exists() noexcept {
  return m_Instance != nullptr;
}
