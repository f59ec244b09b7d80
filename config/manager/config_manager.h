// ConfigManager: the process-wide entry point to the configuration.
#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include <Poco/Path.h>

#include "qr_config/config/manager/initialization.h"
#include "qr_config/config/model/config_tree.h"
#include "qr_config/config/model/node_path.h"
#include "qr_config/platform/locale_descriptor.h"
#include "qr_config/platform/qr_export.h"

class ConfigStartup;
class LoadObserver;

// The one manager of the process. It holds the configuration tree rooted at "Quorin", the
// six standard node paths, and the name tables that the start-up filled; its thirteen
// virtual operations answer the callers' queries.
//
// Lifecycle: at most one manager exists. The host's start-up code (ConfigStartup) creates
// it with Initialize, which reads the whole configuration directory, and deletes it with
// Destroy; everyone else reaches it with Instance().
//
// Threads: Initialize and Destroy run while no other thread uses the library. Afterwards
// every operation may be called from any thread. The tree and the tables never change after
// start-up, except that GetLocale adds locale descriptors and GetLocalizedDriver adds nodes
// below "\Quorin\Localization", each under a lock of its own; all other reads take no lock.
// References returned by the operations stay valid until Destroy.
class QR_API ConfigManager : public ConfigManagerTypes {
 public:
  // The manager. Throws QRError 260 while there is none (before Initialize, after Destroy,
  // and from within the start-up itself).
  static ConfigManager& Instance();

  // Registers a (driver, data source) pair that a manager built in Server mode turns into
  // the "\Quorin\ActiveDataSources" subtree; a data-source name is a regular expression that
  // a database name must match whole. Empty names are ignored; registering a pair twice
  // keeps one. Registrations outlive every manager. Not synchronised: register from one
  // thread before Initialize.
  static void AddActiveDataSource(const std::string& driver, const std::string& dataSource);

  // The standard node paths: "\Quorin", "\Quorin\Distribution", "\Quorin\Traces",
  // "\Quorin\DBDrivers", "\Quorin\Localization" and "\Quorin\ActiveDataSources". The library
  // never makes a node at Distribution(); it is there for hosts that add one.
  const NodePath& Root() const { return m_Root; }
  const NodePath& Distribution() const { return m_Distribution; }
  const NodePath& Traces() const { return m_Traces; }
  const NodePath& DBDrivers() const { return m_DBDrivers; }
  const NodePath& Localization() const { return m_Localization; }
  const NodePath& ActiveDataSources() const { return m_ActiveDataSources; }

  // The path of the main file "qr.cfg" inside `configDirectory`. Throws QRError 260 when no
  // key table exists (that is, outside the life of a manager).
  Poco::Path ConfigFilePath(const std::string& configDirectory);

  // The configuration tree. Callers may walk it without a lock; nodes below
  // "\Quorin\Localization" are appended by GetLocalizedDriver under its lock, so a caller that
  // walks that subtree while another thread loads a locale is not protected.
  virtual Tree& GetTree() = 0;
  // The database name that `name` (a database name or alias) stands for within `driver`.
  // Throws QRError 22 (argument: driver) when the driver has no database table, 13
  // (argument: name) when the table has no such name or alias.
  virtual const std::string& ResolveDatabaseName(const std::string& driver,
                                                 const std::string& name) = 0;
  // The driver name that `name` (a driver name or alias) stands for; the first driver of the
  // driver list that declares an alias wins. Throws QRError 22 (argument: name).
  virtual const std::string& ResolveDriverName(const std::string& name) = 0;
  // The driver's whole table of database names and aliases. Throws QRError 22.
  virtual std::map<std::string, std::string>& GetDatabaseNames(const std::string& driver) = 0;
  // Every driver name and alias of the driver list, mapped to the driver's name.
  virtual std::map<std::string, std::string>& GetDriverNames() = 0;
  // Names of the drivers implemented in "C" (the loadable ones), in driver-list order.
  virtual std::vector<std::string>& GetNativeDrivers() = 0;
  // Names of all other drivers, in driver-list order.
  virtual std::vector<std::string>& GetOtherDrivers() = 0;
  // The descriptor of `language` and `country` on the running platform. A known language
  // with an unknown country yields (and keeps) a copy of the language's descriptor with that
  // country. Throws QRError 270 (argument: the locale identifier) when neither is known.
  virtual const Quorin::LocaleDescriptor& GetLocale(const std::string& language,
                                                    const std::string& country) = 0;
  // The locale table of `platform` as the main file gave it. Throws QRError 268.
  virtual std::map<std::string, Quorin::LocaleDescriptor>& GetPlatformLocales(
      const std::string& platform) = 0;
  // Rewrites `path` (a base such as ".../driver") to the first existing of base + locale
  // identifier + "." + extension, base + language + "." + extension, else base + "en." +
  // extension (returned unchecked). Returns `path`.
  virtual std::string& LocalizeFileName(const Quorin::LocaleDescriptor& locale,
                                        const std::string& extension, std::string& path) = 0;
  // The text of entry `name` of the platform character-set list. Throws QRError 263.
  virtual const std::string& GetPlatformCharSet(const std::string& name) = 0;
  // The text of entry `name` in the character-set table of `database` of `driver`. Throws
  // QRError 262 (argument: driver) when that database has no table, 263 (argument: name)
  // when the table lacks the entry.
  virtual const std::string& GetCharSetTableEntry(const std::string& driver,
                                                  const std::string& database,
                                                  const std::string& name) = 0;
  // The node "\Quorin\Localization\<driver>\<locale identifier>" with the UTF8String fields
  // "External Name" and "Comment". The first request for a locale reads the localised driver
  // file (driver<locale>.cfg, with language and "en" fall-backs) once for every driver it
  // lists. Throws QRError 22 (argument: driver) for a driver without a node under
  // Localization, 264 (argument: the file's path) when no localised file exists, 265 to 267
  // for a broken file, 50 when the file does not list the driver.
  virtual tree_node<Node>& GetLocalizedDriver(const std::string& driver,
                                              const Quorin::LocaleDescriptor& locale) = 0;

 protected:
  ConfigManager();
  virtual ~ConfigManager();

  // The registrations of AddActiveDataSource: driver name to its data-source patterns.
  static std::map<std::string, std::set<std::string>>& GetActiveDataSourceConfig();

  std::map<std::string, std::string> m_DriverNames;
  std::vector<std::string> m_NativeDrivers;
  std::vector<std::string> m_OtherDrivers;
  std::map<std::string, std::map<std::string, std::string>> m_DatabaseNames;
  std::map<std::string, Quorin::LocaleDescriptor> m_Locales;
  std::map<std::string, std::map<std::string, Quorin::LocaleDescriptor>> m_PlatformLocales;
  Tree m_Tree;
  NodePath m_Root;
  NodePath m_Distribution;
  NodePath m_Traces;
  NodePath m_DBDrivers;
  NodePath m_Localization;
  NodePath m_ActiveDataSources;

 private:
  friend class ConfigStartup;

  // Reads the configuration and publishes the manager. Throws QRError 259 when a manager
  // exists (the existing one stays untouched). A failed start-up leaves no manager and no key
  // table behind and reaches the caller as QRError 264 to 267 (a file error, with the file's
  // path), QRError 10 (any other error of the library), or an exception of another class
  // (file system or memory failures).
  // With an observer, reports what the start-up reads and decides (ConfigStartup).
  static void Initialize(Initialization::Mode mode, LoadObserver* observer = nullptr);
  // Deletes the manager with its tree and tables; does nothing when there is none.
  static void Destroy() noexcept;

  ConfigManager(const ConfigManager&) = delete;
  ConfigManager& operator=(const ConfigManager&) = delete;

  static ConfigManager* m_ConfigManager;
};
