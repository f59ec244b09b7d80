// ConfigKeys: the process-wide table of key and file names that every loader reads.
#pragma once

#include <memory>
#include <string>

#include "qr_config/platform/qr_export.h"

// One table per process, created by the start-up sequence and destroyed with the manager
// (or when the start-up fails). The members are the names the configuration files use;
// loaders take them from here rather than from literals.
//
// Threads: Create and Destroy run on the thread that initialises or destroys the manager,
// while no other thread uses the library; Instance only reads.
class ConfigKeys {
 public:
  // Builds the table. Throws QRError 259 when a table exists already.
  static void Create();
  // The table. Throws QRError 260 when there is none.
  static const ConfigKeys& Instance();
  // Deletes the table if there is one; does nothing otherwise.
  static void Destroy() noexcept;
  // True while a table exists.
  static bool Exists() noexcept;

  const std::string ConfigDirectory = "Config Directory";
  const std::string MainFileName = "qr.cfg";
  const std::string SetupDirectory = "setup";
  const std::string IgnoreDriverLoadFailure = "Ignore Driver Load Failure";
  const std::string SetupFileExtension = "Setup File Extension";
  const std::string ConfigFileExtension = "Config File Extension";
  const std::string SqlExternalExtension = "SQL External Extension";
  const std::string Directory = "Directory";
  const std::string DBDrivers = "DBDrivers";
  const std::string Localization = "Localization";
  const std::string Traces = "Traces";
  const std::string ActiveDataSources = "ActiveDataSources";
  const std::string ExternalName = "External Name";
  const std::string Comment = "Comment";
  const std::string DriverListFile = "driver.cfg";
  const std::string LocalizedDriverFile = "driver";
  const std::string LocalizedDriverExtension = "cfg";
  const std::string CharSetTable = "CharSet Table";
  const std::string CharSets = "CharSets";
  const std::string PlatformFile = "platform";
  const std::string Unicode = "Unicode";
  const std::string CharSet = "CharSet";
  const std::string CharSetListExtension = "CharSet List Extension";
  // Field names the loaders read or write on database nodes.
  const std::string Extensions = "Extensions";
  const std::string DriverCapabilities = "Driver Capabilities";
  const std::string ConfigurationFile = "Configuration File";
  const std::string DriversDefaults = "Drivers defaults";

 private:
  ConfigKeys() = default;
  ConfigKeys(const ConfigKeys&) = delete;
  ConfigKeys& operator=(const ConfigKeys&) = delete;

  static std::unique_ptr<ConfigKeys> m_Instance;
};
