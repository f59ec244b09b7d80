// ConfigManagerImpl: the manager that the start-up sequence builds. Internal to the library.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include <Poco/RWLock.h>

#include "qr_config/config/manager/config_manager.h"
#include "qr_config/config/readers/drv_xml_parser.h"
#include "qr_config/config/readers/dsf_xml_parser.h"
#include "qr_config/config/readers/load_observer.h"

class LoadTrace;

// The manager's implementation. Its constructor runs the whole start-up sequence on the
// calling thread: registry parameters, the driver list, the main file, the platform
// character-set list, the active data sources, every loadable driver's setup and data-access
// files, the locale table of the running platform, the Localization node and the databases'
// character-set tables. Only ConfigManager::Initialize constructs it.
//
// Locks (Poco::RWLock, not re-entrant, never held together):
//  - m_LocaleLock guards m_Locales after start-up (GetLocale);
//  - m_TreeLock guards the on-demand creation of nodes below "\Quorin\Localization"
//    (GetLocalizedDriver).
// Every other member is fixed once the constructor returns and is read without a lock.
class ConfigManagerImpl : public ConfigManager {
 public:
  // A character-set list: entry name to text, shared by the databases that name one file.
  using CharSetList = std::map<std::string, std::string>;
  using CharSetListPtr = std::shared_ptr<const CharSetList>;

  // The key of m_CharSetTables is driver + "::" + database. Lookups compare against the three
  // parts in place, so a query builds no string.
  struct CharSetKey {
    std::string_view Driver, Separator, Database;
  };
  struct CharSetKeyLess {
    using is_transparent = void;
    bool operator()(const std::string& a, const std::string& b) const { return a < b; }
    bool operator()(const std::string& a, const CharSetKey& b) const { return Compare(a, b) < 0; }
    bool operator()(const CharSetKey& a, const std::string& b) const { return Compare(b, a) > 0; }
    // Compares `key` with the concatenation of the parts of `parts`, byte-wise.
    static int Compare(std::string_view key, const CharSetKey& parts);
  };

  // Runs the start-up sequence. Throws as ConfigManager::Initialize says; on any exception
  // everything built so far, the key table included, is destroyed. With an observer, the
  // sequence reports what it reads and decides (load_observer.h).
  explicit ConfigManagerImpl(Initialization::Mode mode, LoadObserver* observer = nullptr);
  ~ConfigManagerImpl() override;

  Tree& GetTree() override { return m_Tree; }
  const std::string& ResolveDatabaseName(const std::string& driver,
                                         const std::string& name) override;
  const std::string& ResolveDriverName(const std::string& name) override;
  std::map<std::string, std::string>& GetDatabaseNames(const std::string& driver) override;
  std::map<std::string, std::string>& GetDriverNames() override { return m_DriverNames; }
  std::vector<std::string>& GetNativeDrivers() override { return m_NativeDrivers; }
  std::vector<std::string>& GetOtherDrivers() override { return m_OtherDrivers; }
  const Quorin::LocaleDescriptor& GetLocale(const std::string& language,
                                            const std::string& country) override;
  std::map<std::string, Quorin::LocaleDescriptor>& GetPlatformLocales(
      const std::string& platform) override;
  std::string& LocalizeFileName(const Quorin::LocaleDescriptor& locale,
                                const std::string& extension, std::string& path) override;
  const std::string& GetPlatformCharSet(const std::string& name) override;
  const std::string& GetCharSetTableEntry(const std::string& driver, const std::string& database,
                                          const std::string& name) override;
  tree_node<Node>& GetLocalizedDriver(const std::string& driver,
                                      const Quorin::LocaleDescriptor& locale) override;
  // The same tree as GetTree(), read-only.
  virtual const Tree& GetConstTree() { return m_Tree; }

  Initialization::Mode Mode() const { return m_Mode; }

 private:
  // The start-up steps, in the order the constructor runs them.
  void RunStartup();
  void RunSteps();
  // Runs one step. With a trace, an exception is reported with what it leads to and, when
  // the observer wants to keep going, recorded instead of thrown; the result then tells
  // whether the step completed.
  template <typename Work>
  bool Step(Work&& work);
  void ReportStepFailure(const std::exception_ptr& failure);
  std::vector<DriverEntry>& ReadDriverList(std::vector<DriverEntry>& entries,
                                           const std::string& configDirectory);
  // Reads the section `section` (or one named by a platform family) of the parameter file
  // `baseName` + "." + "CharSet List Extension". `role` says which file it is, for
  // diagnostics.
  CharSetListPtr ReadCharSetList(const std::string& baseName, const std::string& section,
                                 FileRole role);
  void ApplyActiveDataSources(tree_node<Node>& activeDataSources);
  void ListSetupFiles(const std::string& configDirectory, std::vector<std::string>& files);
  // The fields of every database node that the steps after loading read (the extension scan,
  // the character-set pass): the data-access readers record the first field of each of these
  // names in a DsfXmlParser::DatabaseFields made by DatabaseFieldTable, in this order, so
  // that those steps need not walk the nodes' fields again.
  enum DatabaseField {
    kExtensions,
    kDriverCapabilities,
    kConfigurationFile,
    kDirectory,
    kUnicode,
    kCharSetTable
  };
  static DsfXmlParser::DatabaseFields DatabaseFieldTable();
  // The first field of `node` named `name`: first[which] when the readers recorded the node
  // (`first` not null), else by a walk of its fields; null when there is none.
  static const Field* FirstField(Field* const* first, DatabaseField which, const Node& node,
                                 const std::string& name) {
    return first != nullptr ? first[which] : node.FindFirst(name);
  }
  void LoadDrivers(const std::vector<std::string>& setupFiles,
                   const std::vector<DriverEntry>& drivers, const std::string& configDirectory,
                   tree_node<Node>& driversDefaults, tree_node<Node>& activeDataSources,
                   tree_node<Node>& dbDrivers, DsfXmlParser::DatabaseFields& databaseFields);
  // `first`: the database's first fields as the readers recorded them, or null.
  void ScanExtensions(tree_node<Node>& database, Field* const* first);
  // Diagnostics of driver loading, with a trace only.
  void TraceServerModeFlag();
  void TraceSetupSkipped(const class SetupXmlParser& setup, DiagnosticKind kind);
  void TraceDriverCoverage(const std::vector<DriverEntry>& drivers,
                           const tree_node<Node>& activeDataSources,
                           const std::unordered_map<std::string, std::string>& setupOf);
  void BuildCharSetTables(const std::string& configDirectory, tree_node<Node>& dbDrivers,
                          DsfXmlParser::DatabaseFields& databaseFields);
  // With a trace that wants on-demand files: reads each localised driver file that
  // GetLocalizedDriver would read for the running platform's locales, for diagnostics only.
  void CheckLocalizedFiles(const std::string& configDirectory);

  // Reads the setting `name` of the DBDrivers node into `out`, as Node::Find and
  // Field::Value do (QRError 261 when missing, 1 when of another type). With a trace, the
  // cause of that error is set first: `role` says what the start-up needs the setting for.
  template <typename T>
  void ReadSetting(const std::string& name, T& out, const char* role);

  // The node "\Quorin\Localization\<driver>", or its child named `*localeId`, as a node
  // path made of those names designates it; null when there is none. Names without the path
  // separator (all real ones) are matched level by level in place, allocating nothing.
  tree_node<Node>* FindLocalized(const std::string& driver, const std::string* localeId);

  // The "Config Directory" text of the root node (QRError 261 or 1 when missing or mistyped).
  std::string ConfigDirectory() const;

  // Where the driver list declares each driver; filled with a trace only.
  SourceLocation DriverPlace(const std::string& driver) const;

  Poco::RWLock m_TreeLock;
  Poco::RWLock m_LocaleLock;
  const std::string m_KeySeparator = "::";
  CharSetListPtr m_PlatformCharSets;
  std::map<std::string, CharSetListPtr, CharSetKeyLess> m_CharSetTables;
  const Initialization::Mode m_Mode;
  // The start-up's diagnostics, while the constructor runs with an observer; null otherwise.
  LoadTrace* m_Trace = nullptr;
  std::map<std::string, SourceLocation> m_DriverPlaces;
  bool m_SetupListed = false;
};

// Joins two path texts with the platform's separator, as plain strings.
std::string JoinNative(const std::string& parent, const std::string& child);
