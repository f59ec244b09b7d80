// Fixture for tests that initialise the manager over a temporary installation.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "qr_config/config/manager/config_keys.h"
#include "qr_config/qr_config.h"
#include "support/temp_installation.h"

class ManagerTest : public ::testing::Test {
 protected:
  ManagerTest() {
    Registry::ClearParameters();
    Registry::SetParameter("Config Directory", m_Install.Dir());
  }
  ~ManagerTest() override {
    ConfigStartup::Destroy();
    Registry::ClearParameters();
  }

  ConfigManager& Init(Initialization::Mode mode = Initialization::Library) {
    ConfigStartup::Initialize(mode);
    return ConfigManager::Instance();
  }

  // The field `field` of the node at `path` ("\Quorin\..."), read as T.
  template <typename T>
  T Value(const std::string& path, const std::string& field) {
    T value{};
    ConfigManager::Instance()
        .GetTree()
        .Find(ConfigManager::NodePath(path))
        .value()
        .Find(field)
        .Value(value);
    return value;
  }

  // The names of the children of the node at `path`, in order.
  std::vector<std::string> Children(const std::string& path);

  TestPlatform m_Platform;
  TempInstallation m_Install;
};

// An observer that keeps what the start-up reports, as "kind file-name:line" strings (the
// file by its last name), every field's origin chain as "path|field <= text@file:line", and
// every file as "read role file-name" or "skipped role file-name".
struct RecordingObserver : LoadObserver {
  bool KeepGoing = false;
  bool Values = false;
  std::vector<std::string> Diagnostics;
  std::vector<std::string> Origins;
  std::vector<std::string> Files;

  bool WantsKeepGoing() const override { return KeepGoing; }
  bool WantsValues() const override { return Values; }
  void OnDiagnostic(const LoadDiagnostic& diagnostic) override;
  void OnValue(const LoadedValue& value) override;
  void OnFile(const LoadedFile& file) override;
};

// Runs `call` and returns the QRError it throws; fails the test when it throws none.
QRError CatchQRError(const std::function<void()>& call);
