#include "support/temp_installation.h"

#include <Poco/File.h>
#include <Poco/Path.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <ostream>
#include <stdexcept>

#include "qr_config/platform/process.h"

TempInstallation::TempInstallation() {
  std::string pattern = Poco::Path::temp() + "qr_config_test_XXXXXX";
  if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("mkdtemp failed");
  m_Dir = pattern;
}

TempInstallation::~TempInstallation() {
  std::error_code ignored;
  std::filesystem::remove_all(m_Dir, ignored);
}

std::string TempInstallation::Write(const std::string& relative, const std::string& content) const {
  const std::string path = Path(relative);
  Poco::File(Poco::Path(path).parent()).createDirectories();
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  out << content;
  if (!out) throw std::runtime_error("cannot write " + path);
  return path;
}

void TempInstallation::MakeDir(const std::string& relative) const {
  Poco::File(Path(relative)).createDirectories();
}

void TempInstallation::Remove(const std::string& relative) const {
  Poco::File(Path(relative)).remove(true);
}

std::string TempInstallation::MainFile(const std::string& settingsExtra,
                                       const std::string& mainExtra) {
  return std::string(kXmlDeclaration) +
         "<Configuration>\n"
         "  <Locale>\n    <Language>en</Language>\n    <CharSet>UTF-8</CharSet>\n  </Locale>\n"
         "  <Locale>\n    <Language>fr_FR</Language>\n"
         "    <CharSet Platform=\"TestFamily\">ISO-8859-1</CharSet>\n  </Locale>\n"
         "  <Settings>\n"
         "    <Parameter Name=\"Setup File Extension\">setup</Parameter>\n"
         "    <Parameter Name=\"Config File Extension\">dsf</Parameter>\n"
         "    <Parameter Name=\"Ignore Driver Load Failure\">No</Parameter>\n"
         "    <Parameter Name=\"SQL External Extension\">sqx</Parameter>\n"
         "    <Parameter Name=\"CharSet List Extension\">csl</Parameter>\n" +
         settingsExtra + "  </Settings>\n" + mainExtra + "</Configuration>\n";
}

std::string TempInstallation::SetupFile(const std::string& driver, const std::string& file,
                                        const std::string& extra) {
  return "<Setup>\n<NetworkLayer Name=\"" + driver + "\"/>\n<Directory>d/" + file +
         "</Directory>\n<DataFileName>" + file +
         "</DataFileName>\n<Version Type=\"Client\">1.2</Version>\n" + extra + "</Setup>\n";
}

void TempInstallation::WriteBase(const std::string& settingsExtra, const std::string& driverList,
                                 const std::string& mainExtra) const {
  Write("qr.cfg", MainFile(settingsExtra, mainExtra));
  Write("driver.cfg", "<DriverList>\n" + driverList + "</DriverList>\n");
  Write("platform.csl", Document(FileKind::PlatformList, kBaselinePayload));
  MakeDir("setup");
}

void TempInstallation::WriteDriver(const std::string& driver, const std::string& databases,
                                   std::string file) const {
  if (file.empty()) file = driver;
  Write("setup/" + file + ".setup", SetupFile(driver, file));
  Write("d/" + file + "/" + file + ".dsf", "<DataAccess>\n" + databases + "</DataAccess>\n");
}

std::string BillionLaughs() {
  std::string dtd = "<!DOCTYPE R [\n<!ENTITY l0 \"lol\">\n";
  for (int i = 1; i <= 10; ++i) {
    dtd += "<!ENTITY l" + std::to_string(i) + " \"";
    for (int j = 0; j < 10; ++j) dtd += "&l" + std::to_string(i - 1) + ";";
    dtd += "\">\n";
  }
  return kXmlDeclaration + dtd + "]>\n";
}

namespace {

struct KindInfo {
  const char* Name;
  const char* Relative;
};

const KindInfo kKinds[] = {
    {"Main", "qr.cfg"},
    {"DriverList", "driver.cfg"},
    {"Setup", "setup/Crv.setup"},
    {"DataAccess", "d/Crv/Crv.dsf"},
    {"Localized", "driveren.cfg"},
    {"PlatformList", "platform.csl"},
    {"CharSetTable", "d/Crv/crv.csl"},
};

}  // namespace

const char* KindName(FileKind kind) {
  return kKinds[static_cast<int>(kind)].Name;
}

void PrintTo(FileKind kind, std::ostream* out) {
  *out << KindName(kind);
}

const std::vector<FileKind>& AllKinds() {
  static const std::vector<FileKind> kinds = {
      FileKind::Main,      FileKind::DriverList,   FileKind::Setup,       FileKind::DataAccess,
      FileKind::Localized, FileKind::PlatformList, FileKind::CharSetTable};
  return kinds;
}

const char* TempInstallation::Relative(FileKind kind) {
  return kKinds[static_cast<int>(kind)].Relative;
}

std::string TempInstallation::Document(FileKind kind, const std::string& payload,
                                       const std::string& prolog, const std::string& extra) {
  switch (kind) {
    case FileKind::Main:
      return prolog + MainFile("    " + ParameterElement("Probe", payload) + "\n", extra)
                          .substr(std::string(kXmlDeclaration).size());
    case FileKind::DriverList:
      return prolog + "<DriverList>\n<NetworkLayer Name=\"Crv\" Implementation=\"C\">\n<Alias>" +
             payload + "</Alias>\n</NetworkLayer>\n" + extra + "</DriverList>\n";
    case FileKind::Setup:
      return prolog + SetupFile("Crv", "Crv",
                                "<Version Type=\"SetupProbe\">" + payload + "</Version>\n" + extra);
    case FileKind::DataAccess:
      return prolog + "<DataAccess>\n<Defaults>\n" + ParameterElement("Unicode", "CharSet") + "\n" +
             ParameterElement("CharSet Table", "crv") +
             "\n</Defaults>\n<DataBase Name=\"db1\" Active=\"Yes\">\n<Alias>D1</Alias>\n" +
             ParameterElement("Probe", payload) + "\n</DataBase>\n" + extra + "</DataAccess>\n";
    case FileKind::Localized:
      return prolog +
             "<DriverTexts>\n<NetworkLayer Name=\"Crv\">\n<Message id=\"Name\">Corvane</Message>\n"
             "<Message id=\"Comment\">" +
             payload + "</Message>\n</NetworkLayer>\n" + extra + "</DriverTexts>\n";
    case FileKind::PlatformList:
      return "[TestOS]\nUTF-8 = UTF-8\nLatin = ISO-8859-1\nProbe = " + payload + "\n";
    case FileKind::CharSetTable:
      return "[CharSets]\nUTF-8 = DB_UTF8\nProbe = " + payload + "\n";
  }
  return "";
}

void TempInstallation::Write(FileKind kind, const std::string& bytes) const {
  // remove_all takes a link itself (even a dangling one), so nothing is written through it.
  std::error_code ignored;
  std::filesystem::remove_all(Path(kind), ignored);
  Write(Relative(kind), bytes);
}

void TempInstallation::WriteEdited(FileKind kind, const std::string& from,
                                   const std::string& to) const {
  std::string text = Document(kind, kBaselinePayload);
  const std::size_t at = text.find(from);
  if (at == std::string::npos) throw std::logic_error("no \"" + from + "\" in " + Relative(kind));
  Write(kind, text.replace(at, from.size(), to));
}

void TempInstallation::WriteBaseline() const {
  for (FileKind kind : AllKinds()) WriteDocument(kind, kBaselinePayload);
}

TestPlatform::TestPlatform() {
  Process::Configure(
      {"TestOS", "UTF-8", {"TestOS", "TestFamily", "p2"}, {{"TestFamily", {"TestOS", "OtherOS"}}}});
}

TestPlatform::~TestPlatform() {
  Process::Reset();
}
