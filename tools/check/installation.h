// Installation: every file of a configuration directory as `check` sees it.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "check/data_access_model.h"
#include "check/file_vocabulary.h"
#include "check/xml_document.h"
#include "qr_config/config/manager/initialization.h"
#include "qr_config/config/model/tree.h"
#include "qr_config/config/readers/cfg_xml_parser.h"
#include "qr_config/config/readers/drv_xml_parser.h"

namespace qrconfig {

struct ScannedFile {
  FileKind Kind;
  XmlDocument Document;  // Document.Path is the full path
};

// One entry of the setup directory and what the loader would make of it.
struct SetupEntry {
  ScannedFile File;
  bool Skipped = false;  // its name holds ".32." and the setup extension: never read
  bool Read = false;     // the setup reader read it to its end
  // The setup reader's results (SetupXmlParser, one reader for all files in listing order,
  // as the loader does).
  std::string Driver;
  std::string Directory;
  std::string DataFileName;
  std::map<std::string, std::string> Versions;
  // The driver's own state: known to the driver list, native, admitted by the active data
  // sources. A setup file is loaded only with all three.
  bool KnownDriver = false;
  bool NativeDriver = false;
  bool ActiveDriver = false;
  std::string DataFilePath;  // empty when the setup file or the settings do not give one
  bool DataFileExists = false;
  // The data-access file, read when the loader would read it and it exists.
  std::unique_ptr<ScannedFile> DataFile;
  std::unique_ptr<DataAccessModel> Model;
};

// Reads a configuration directory the way the start-up would, file by file, without
// stopping at the first problem: the main file through the library's main-file reader into a
// scratch tree (for the exact settings, defaults, active data sources and locale tables), the
// driver list through its reader, every setup entry in listing order through one setup
// reader, and each data-access file the loader would read; every XML file is also scanned
// (XmlScanner) for names, texts and lines. Nothing is thrown for a broken installation: each
// part keeps what could be read. The process description (Process) and the mode decide
// platforms, locales and sections, as for the library.
class Installation {
 public:
  using Node = ConfigManagerTypes::Node;
  using TreeNode = tree_node<Node>;

  // `activeSources`: the host's registrations (--active), used in server mode only.
  Installation(std::string configDirectory, Initialization::Mode mode,
               const std::vector<std::pair<std::string, std::string>>& activeSources);
  ~Installation();
  Installation(const Installation&) = delete;
  Installation& operator=(const Installation&) = delete;

  const std::string& ConfigDirectory() const { return m_ConfigDirectory; }
  Initialization::Mode Mode() const { return m_Mode; }
  // The full path of `name` inside the configuration directory.
  std::string PathOf(const std::string& name) const;

  // The main file, and what its reader left: the DBDrivers settings, the "Drivers defaults"
  // with the start-up's fall-backs ("Status" 0, "Library Name" "Not Defined") appended, and
  // the per-platform locale tables. After a failed read they hold what came before the
  // failure; MainFileError() is then the error's code (0 when it was read whole).
  const ScannedFile& MainFile() const { return m_MainFile; }
  const Node& Settings() const { return m_DBDriversNode->value(); }
  // The DBDrivers node with the driver and database nodes the main file made below it.
  const TreeNode& DBDriversNode() const { return *m_DBDriversNode; }
  const Node& DriversDefaults() const { return m_DefaultsNode->value(); }
  const CfgXmlParser::PlatformLocales& PlatformLocales() const { return m_PlatformLocales; }
  std::int32_t MainFileError() const { return m_MainFileError; }
  // The String setting `name` of DBDrivers (first field of that name); none when it is
  // missing or of another type.
  std::optional<std::string> TextSetting(const std::string& name) const;

  // Whether the loader skips a failing setup or data-access file rather than failing the
  // start-up: always in server mode, else when "Ignore Driver Load Failure" is a Bool true.
  bool IgnoresDriverFailures() const;

  // The active data sources the loader applies: driver name to its patterns, in the order the
  // loader tries them; empty when loading is not restricted. In library mode they come from
  // the main file's ActiveDataSources section, in server mode from the registrations.
  const std::map<std::string, std::vector<std::string>>& ActiveSources() const {
    return m_ActiveSources;
  }
  // The patterns of `driver`, or nullptr when loading is not restricted.
  const std::vector<std::string>* PatternsOf(const std::string& driver) const;

  // The driver list and its entries (all of them, native or not, in file order).
  const ScannedFile& DriverList() const { return m_DriverList; }
  const std::vector<DriverEntry>& Drivers() const { return m_Drivers; }
  // The first entry named `name`, or nullptr.
  const DriverEntry* FindDriver(const std::string& name) const;

  // The setup directory and its entries in listing order; SetupListed() is false when the
  // directory could not be listed.
  const std::string& SetupDirectory() const { return m_SetupDirectory; }
  bool SetupListed() const { return m_SetupListed; }
  const std::vector<SetupEntry>& SetupEntries() const { return m_SetupEntries; }

  // The localised driver files: "driver*.cfg" in the configuration directory but driver.cfg.
  const std::vector<ScannedFile>& LocalisedFiles() const { return m_LocalisedFiles; }

  // Every file that was scanned, in the order above.
  std::vector<const ScannedFile*> ScannedFiles() const;

 private:
  void ReadMainFile();
  void CollectActiveSources(const std::vector<std::pair<std::string, std::string>>& registered);
  void ReadDriverList();
  void ReadSetupEntries();
  void ReadDataFile(SetupEntry& entry);
  void ReadLocalisedFiles();

  std::string m_ConfigDirectory;
  Initialization::Mode m_Mode;
  ScannedFile m_MainFile;
  // The scratch tree the main-file reader fills: a root with the four children that the
  // start-up makes before it reads the main file.
  tree<Node> m_Scratch;
  TreeNode* m_DefaultsNode = nullptr;
  TreeNode* m_DBDriversNode = nullptr;
  TreeNode* m_TracesNode = nullptr;
  TreeNode* m_ActiveNode = nullptr;
  CfgXmlParser::PlatformLocales m_PlatformLocales;
  std::int32_t m_MainFileError = 0;
  std::map<std::string, std::vector<std::string>> m_ActiveSources;
  ScannedFile m_DriverList;
  std::vector<DriverEntry> m_Drivers;
  std::string m_SetupDirectory;
  bool m_SetupListed = false;
  std::vector<SetupEntry> m_SetupEntries;
  std::vector<ScannedFile> m_LocalisedFiles;
};

}  // namespace qrconfig
