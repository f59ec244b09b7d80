#include "bench/generate_installation.h"

#include <filesystem>
#include <fstream>
#include <stdexcept>

#include "qr_config/platform/process.h"

namespace fs = std::filesystem;

namespace {

// `value` in decimal, zero-padded to `width` digits.
std::string Pad(int value, int width) {
  std::string digits = std::to_string(value);
  if (static_cast<int>(digits.size()) < width)
    digits.insert(0, static_cast<std::size_t>(width) - digits.size(), '0');
  return digits;
}

std::string DriverDirectory(int driver) {
  return "d" + Pad(driver, 3);
}

std::string Parameter(const std::string& indent, const std::string& name,
                      const std::string& value) {
  return indent + "<Parameter Name=\"" + name + "\">" + value + "</Parameter>\n";
}

const char* const kDatabaseKinds[] = {"production", "staging", "reporting", "archive"};

// A platform name that the running process does not support.
const char* const kForeignPlatform = "Windows";

// Writes files below one directory and counts their bytes by kind.
class FileWriter {
 public:
  enum Kind { StartupXml, StartupIni, Localized, Other };

  FileWriter(const std::string& directory, InstallationGenerator::Summary& summary)
      : m_Directory(directory), m_Summary(summary) {}

  void Write(const std::string& relative, const std::string& content, Kind kind) {
    const fs::path file = fs::path(m_Directory) / relative;
    fs::create_directories(file.parent_path());
    std::ofstream out(file, std::ios::binary | std::ios::trunc);
    out.write(content.data(), static_cast<std::streamsize>(content.size()));
    out.close();
    if (!out) throw std::runtime_error("cannot write " + file.string());
    const std::uint64_t bytes = content.size();
    m_Summary.TotalBytes += bytes;
    switch (kind) {
      case StartupXml:
        m_Summary.StartupXmlBytes += bytes;
        m_Summary.StartupXmlFiles.push_back(file.string());
        break;
      case StartupIni:
        m_Summary.StartupIniBytes += bytes;
        break;
      case Localized:
        m_Summary.LocalizedBytes += bytes;
        break;
      case Other:
        break;
    }
  }

 private:
  std::string m_Directory;
  InstallationGenerator::Summary& m_Summary;
};

std::string MainFile() {
  const Process& process = Process::Instance();
  const std::string running = process.Name();
  const std::string family = process.PlatformNames().back();
  // (locale identifier, platform attribute, character set); an empty platform attribute
  // writes a CharSet without one, which applies to the running platform.
  const char* const kLocales[][3] = {
      {"en", "running", "UTF-8"},      {"en_US", "family", "UTF-8"},
      {"fr", "running", "ISO-8859-1"}, {"fr_FR", "family", "ISO-8859-15"},
      {"fr_CA", "", "UTF-8"},          {"de", "running", "ISO-8859-1"},
      {"de_DE", "family", "UTF-8"},    {"es", "running", "ISO-8859-1"},
      {"ja_JP", "family", "EUC-JP"},   {"pt_BR", "foreign", "windows-1252"},
  };
  std::string text =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      "<!-- Synthetic installation written by qr_generate. -->\n"
      "<Configuration>\n";
  for (const auto& locale : kLocales) {
    const std::string which = locale[1];
    const std::string platform = which == "running"   ? running
                                 : which == "family"  ? family
                                 : which == "foreign" ? kForeignPlatform
                                                      : "";
    text += "  <Locale>\n    <Language>" + std::string(locale[0]) + "</Language>\n";
    text += platform.empty() ? "    <CharSet>" : "    <CharSet Platform=\"" + platform + "\">";
    text += std::string(locale[2]) + "</CharSet>\n  </Locale>\n";
  }
  const std::string indent = "    ";
  text += "  <Settings>\n";
  text += Parameter(indent, "Setup File Extension", "setup");
  text += Parameter(indent, "Config File Extension", "dsf");
  text += Parameter(indent, "Ignore Driver Load Failure", "No");
  text += Parameter(indent, "SQL External Extension", "sqx");
  text += Parameter(indent, "CharSet List Extension", "csl");
  text += Parameter(indent, "Connection Timeout", "30");
  text += Parameter(indent, "Pool Connections", "Yes");
  text += Parameter(indent, "Statement Log", "qr_statements.log");
  text +=
      "    <Library>\n" + Parameter(indent + "  ", "Connection Timeout", "60") + "    </Library>\n";
  text += "    <Server>\n" + Parameter(indent + "  ", "Connection Timeout", "10") +
          Parameter(indent + "  ", "Pool Connections", "No") + "    </Server>\n";
  text += "  </Settings>\n";
  text += "  <DriverDefaults>\n";
  text += Parameter(indent, "Fetch Size", "100");
  text += Parameter(indent, "Read Only", "No");
  text += Parameter(indent, "Driver Capabilities", "Read,Write");
  text += "  </DriverDefaults>\n";
  text +=
      "  <Traces Active=\"Yes\">\n"
      "    <Logger Implementation=\"C\" ClassID=\"qr.logger.file\"/>\n"
      "    <Trace Name=\"Connections\" Active=\"Yes\">\n"
      "      <Trace Name=\"Connect\" Active=\"Yes\"/>\n"
      "      <Trace Name=\"Disconnect\" Active=\"No\"/>\n"
      "    </Trace>\n"
      "    <Trace Name=\"Statements\" Active=\"No\">\n"
      "      <Trace Name=\"Prepare\" Active=\"Yes\"/>\n"
      "      <Trace Name=\"Execute\" Active=\"Yes\"/>\n"
      "    </Trace>\n"
      "  </Traces>\n"
      "</Configuration>\n";
  return text;
}

int OtherDriverCount(int drivers) {
  return drivers / 10 > 0 ? drivers / 10 : 1;
}

std::string OtherDriverName(int index) {
  return "RelayBridge" + Pad(index, 2);
}

std::string DriverList(int drivers) {
  std::string text =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      "<DriverList>\n";
  for (int i = 0; i < drivers; ++i) {
    text += "  <NetworkLayer Name=\"" + InstallationGenerator::DriverName(i) +
            "\" Implementation=\"C\">\n";
    for (int k = 0; k < InstallationGenerator::DriverAliasCount(i); ++k)
      text += "    <Alias>" + InstallationGenerator::DriverAlias(i, k) + "</Alias>\n";
    text += "  </NetworkLayer>\n";
  }
  for (int i = 0; i < OtherDriverCount(drivers); ++i) {
    text += "  <NetworkLayer Name=\"" + OtherDriverName(i) + "\" Implementation=\"Script\">\n";
    text += "    <Alias>JB" + Pad(i, 2) + "</Alias>\n  </NetworkLayer>\n";
  }
  return text + "</DriverList>\n";
}

std::string SetupFile(const std::string& driver, const std::string& directory, int major) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
         "<Setup>\n"
         "  <NetworkLayer Name=\"" +
         driver +
         "\"/>\n"
         "  <Directory>drivers/" +
         directory +
         "</Directory>\n"
         "  <DataFileName>" +
         directory +
         "</DataFileName>\n"
         "  <Version Type=\"Client\">" +
         std::to_string(major) +
         ".3.1</Version>\n"
         "  <Version Type=\"Driver\">4.2." +
         std::to_string(major) +
         "</Version>\n"
         "</Setup>\n";
}

std::string Database(int driver, int database, const std::string& family) {
  const std::string indent = "    ";
  std::string text =
      "  <DataBase Name=\"" + InstallationGenerator::DatabaseName(driver, database) + "\"";
  switch (database % 50) {
    case 47:
      text += " Active=\"No\"";
      break;
    case 48:
      text += std::string(" Active=\"Yes\" Platform=\"") + kForeignPlatform + "\"";
      break;
    case 49:  // no "Active": not loaded
      break;
    default:
      text += " Active=\"Yes\"";
      if (database % 10 == 5)
        text += std::string(" Platform=\"") + kForeignPlatform + "," + family + "\"";
  }
  text += ">\n";
  for (int k = 0; k < InstallationGenerator::DatabaseAliasCount(database); ++k)
    text += indent + "<Alias>" + InstallationGenerator::DatabaseAlias(driver, database, k) +
            "</Alias>\n";
  const std::string kind = kDatabaseKinds[database % 4];
  const std::string id = Pad(driver, 3) + "-" + Pad(database, 5);
  text += Parameter(indent, "Host", "host" + id + ".db.example.net");
  text += Parameter(indent, "Port", std::to_string(5000 + database % 1000));
  text += Parameter(indent, "Service Name", "SVC_" + Pad(database, 5) + "_" + kind);
  text += Parameter(indent, "Pool Size", std::to_string(4 + database % 29));
  text += Parameter(indent, "Use SSL", database % 3 != 0 ? "Yes" : "No");
  text += Parameter(indent, "Read Only", database % 4 == 3 ? "Yes" : "No");
  text += Parameter(indent, "Statement Cache", std::to_string(16 << (database % 4)));
  text += Parameter(indent, "Description",
                    "The " + kind + " database " + std::to_string(database) + " of driver " +
                        std::to_string(driver));
  if (database % 5 == 0) {
    text += indent + "<Libraries>\n";
    text += indent + "  <Library>libqrdrv" + Pad(driver, 3) + "_client.so.21</Library>\n";
    text += indent + "  <Library Platform=\"" + kForeignPlatform + "\">qrdrv" + Pad(driver, 3) +
            ".dll</Library>\n";
    text += indent + "  <Library Platform=\"" + family + "\">libcrvsec" + Pad(driver, 3) +
            ".so</Library>\n";
    text += indent + "</Libraries>\n";
  }
  if (database % 7 == 0)
    text += indent + "<Library>libqrdrv" + Pad(driver, 3) + "_custom.so.2</Library>\n";
  if (!InstallationGenerator::HasCharSetTable(database))
    text += Parameter(indent, "Unicode", "UTF8");
  if (database % 20 == 0) text += Parameter(indent, "Extensions", "spatial,text");
  return text + "  </DataBase>\n";
}

std::string DataAccessFile(int driver, int databases, const std::string& family) {
  const std::string indent = "    ";
  std::string text =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      "<!-- Data-access file of " +
      InstallationGenerator::DriverName(driver) +
      ", written by qr_generate. -->\n"
      "<DataAccess>\n"
      "  <Defaults>\n";
  text += Parameter(indent, "Port", "5000");
  text += Parameter(indent, "Unicode", "CharSet");
  text += Parameter(indent, "CharSet Table", DriverDirectory(driver));
  text += Parameter(indent, "Supports Savepoints", "Yes");
  text += Parameter(indent, "Supports Batch", "No");
  text += Parameter(indent, "Fetch Rows", "200");
  text += Parameter(indent, "Login Timeout", "30");
  text += Parameter(indent, "Isolation Level", "Read Committed");
  text += Parameter(indent, "Date Format", "YYYY-MM-DD HH24:MI:SS");
  text += Parameter(indent, "Quote Identifiers", "True");
  text += Parameter(indent, "Use SSL", "No");
  text += indent + "<Library>libqrdrv" + Pad(driver, 3) + ".so.4</Library>\n";
  text += "  </Defaults>\n";
  text.reserve(text.size() + static_cast<std::size_t>(databases) * 900);
  for (int j = 0; j < databases; ++j) text += Database(driver, j, family);
  return text + "</DataAccess>\n";
}

std::string CharSetTable() {
  const char* const kDatabaseNames[] = {"DB_UTF8",   "DB_LATIN1", "DB_LATIN9",  "DB_EUCJP",
                                        "DB_SJIS",   "DB_GBK",    "DB_LATIN2",  "DB_CYRILLIC",
                                        "DB_CP1252", "DB_ASCII",  "DB_KSC5601", "DB_UTF16"};
  std::string text = "; Character-set table: process character sets to the database's names.\n";
  text += "[CharSets]\n";
  const auto& entries = InstallationGenerator::CharSetEntries();
  for (std::size_t i = 0; i < entries.size(); ++i)
    text += entries[i] + " = " +
            kDatabaseNames[i % (sizeof kDatabaseNames / sizeof *kDatabaseNames)] + "\n";
  return text;
}

std::string PlatformList() {
  const Process& process = Process::Instance();
  std::string text = "; Platform character-set list, written by qr_generate.\n";
  for (const std::string& section :
       {process.Name(), process.PlatformNames().back(), std::string(kForeignPlatform)}) {
    text += "[" + section + "]\n";
    for (const std::string& entry : InstallationGenerator::CharSetEntries())
      text += entry + " = " + entry + "\n";
    text += "\n";
  }
  return text;
}

struct LocalizedTexts {
  const char* FileLocale;  // the part of the file name after "driver"
  const char* Name;        // followed by the driver number
  const char* Comment;     // followed by the driver number
};

const LocalizedTexts kLocalizedFiles[] = {
    {"en", "Quorin driver ", "Native driver for the synthetic databases, number "},
    {"fr", "Pilote Quorin n\xC2\xB0 ",
     "Pilote natif des bases de donn\xC3\xA9"
     "es synth\xC3\xA9tiques, n\xC2\xB0 "},
    {"de_DE", "Quorin-Treiber Nr. ",
     "Nativer Treiber f\xC3\xBCr die synthetischen Datenbanken, Nr. "},
    {"es", "Controlador Quorin n.\xC2\xBA ",
     "Controlador nativo de las bases de datos sint\xC3\xA9ticas, n.\xC2\xBA "},
    {"ja_JP", "Quorin \xE3\x83\x89\xE3\x83\xA9\xE3\x82\xA4\xE3\x83\x90 ",
     "\xE5\x90\x88\xE6\x88\x90\xE3\x83\x87\xE3\x83\xBC\xE3\x82\xBF\xE3\x83\x99\xE3\x83\xBC\xE3\x82"
     "\xB9\xE7\x94\xA8\xE3\x83\x89\xE3\x83\xA9\xE3\x82\xA4\xE3\x83\x90 "},
};

std::string LocalizedFile(const LocalizedTexts& texts, int drivers) {
  std::string text =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      "<DriverTexts>\n";
  for (int i = 0; i < drivers; ++i) {
    text += "  <NetworkLayer Name=\"" + InstallationGenerator::DriverName(i) + "\">\n";
    text +=
        "    <Message id=\"Name\">" + std::string(texts.Name) + std::to_string(i) + "</Message>\n";
    text += "    <Message id=\"Comment\">" + std::string(texts.Comment) + std::to_string(i) +
            "</Message>\n";
    text += "  </NetworkLayer>\n";
  }
  return text + "</DriverTexts>\n";
}

}  // namespace

std::string InstallationGenerator::DriverName(int driver) {
  return "QrDriver" + Pad(driver, 3);
}

int InstallationGenerator::DriverAliasCount(int driver) {
  return driver % 3 == 0 ? 3 : 2;
}

std::string InstallationGenerator::DriverAlias(int driver, int alias) {
  switch (alias) {
    case 0:
      return "QRD" + Pad(driver, 3);
    case 1:
      return "qrdriver" + Pad(driver, 3);
    default:
      return "legacy.network.layer." + Pad(driver, 3);
  }
}

std::string InstallationGenerator::DatabaseName(int driver, int database) {
  return "db" + Pad(driver, 3) + "_" + Pad(database, 5) + "_" + kDatabaseKinds[database % 4];
}

int InstallationGenerator::DatabaseAliasCount(int database) {
  return database % 2 == 0 ? 2 : 1;
}

std::string InstallationGenerator::DatabaseAlias(int driver, int database, int alias) {
  if (alias == 0) return "DB" + Pad(driver, 3) + Pad(database, 5);
  return "svc_" + Pad(driver, 3) + "_" + Pad(database, 5) + "_primary";
}

bool InstallationGenerator::DatabaseLoaded(int database) {
  return database % 50 < 47;
}

bool InstallationGenerator::HasCharSetTable(int database) {
  return database % 11 != 0;
}

const std::vector<std::string>& InstallationGenerator::CharSetEntries() {
  static const std::vector<std::string> entries = {
      "UTF-8",      "ISO-8859-1", "ISO-8859-15",  "EUC-JP",   "Shift_JIS", "GBK",
      "ISO-8859-2", "ISO-8859-5", "windows-1252", "US-ASCII", "EUC-KR",    "UTF-16"};
  return entries;
}

const std::vector<std::pair<std::string, std::string>>& InstallationGenerator::LocalizedLocales() {
  static const std::vector<std::pair<std::string, std::string>> locales = {
      {"en", "US"}, {"fr", "FR"}, {"de", "DE"}, {"es", ""}, {"ja", "JP"}};
  return locales;
}

InstallationGenerator::Summary InstallationGenerator::Write(const std::string& directory,
                                                            const Shape& shape) {
  if (shape.Drivers <= 0 || shape.DatabasesPerDriver <= 0)
    throw std::invalid_argument("an installation needs at least one driver and one database");
  if (fs::exists(fs::path(directory) / "qr.cfg"))
    throw std::runtime_error(directory + " holds a configuration already");

  Summary summary;
  summary.Directory = directory;
  summary.Layout = shape;
  FileWriter writer(directory, summary);
  const std::string family = Process::Instance().PlatformNames().back();

  writer.Write("qr.cfg", MainFile(), FileWriter::StartupXml);
  writer.Write("driver.cfg", DriverList(shape.Drivers), FileWriter::StartupXml);
  writer.Write("platform.csl", PlatformList(), FileWriter::StartupIni);
  const std::string table = CharSetTable();
  for (int i = 0; i < shape.Drivers; ++i) {
    const std::string directoryName = DriverDirectory(i);
    writer.Write("setup/qrdriver" + Pad(i, 3) + ".setup",
                 SetupFile(DriverName(i), directoryName, 19 + i % 4), FileWriter::StartupXml);
    // Skipped by name: the loader never opens it.
    if (i % 10 == 0)
      writer.Write("setup/qrdriver" + Pad(i, 3) + ".32.setup",
                   SetupFile(DriverName(i), directoryName + "_32", 19), FileWriter::Other);
    const std::string base = "drivers/" + directoryName + "/" + directoryName;
    writer.Write(base + ".dsf", DataAccessFile(i, shape.DatabasesPerDriver, family),
                 FileWriter::StartupXml);
    writer.Write(base + ".csl", table, FileWriter::StartupIni);
    if (i % 2 == 0) {
      writer.Write("drivers/" + directoryName + "/extensions/spatial-pack/spatial.sqx",
                   "; marker of the spatial package\n", FileWriter::Other);
      writer.Write("drivers/" + directoryName + "/extensions/empty-pack/README",
                   "This package carries no marker file.\n", FileWriter::Other);
    }
  }
  for (int i = 0; i < OtherDriverCount(shape.Drivers); ++i)
    writer.Write("setup/relaybridge" + Pad(i, 2) + ".setup",
                 SetupFile(OtherDriverName(i), "rb" + Pad(i, 2), 8), FileWriter::StartupXml);
  for (const LocalizedTexts& texts : kLocalizedFiles)
    writer.Write(std::string("driver") + texts.FileLocale + ".cfg",
                 LocalizedFile(texts, shape.Drivers), FileWriter::Localized);

  for (int j = 0; j < shape.DatabasesPerDriver; ++j)
    if (DatabaseLoaded(j)) summary.LoadedDatabases += shape.Drivers;
  return summary;
}
