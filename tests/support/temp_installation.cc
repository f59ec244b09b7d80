#include "support/temp_installation.h"

#include <cstdlib>
#include <fstream>
#include <stdexcept>

#include <Poco/File.h>
#include <Poco/Path.h>

#include "qr_config/platform/process.h"

TempInstallation::TempInstallation() {
  std::string pattern = Poco::Path::temp() + "qr_config_test_XXXXXX";
  if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("mkdtemp failed");
  m_Dir = pattern;
}

TempInstallation::~TempInstallation() {
  try {
    Poco::File(m_Dir).remove(true);
  } catch (...) {
  }
}

std::string TempInstallation::Path(const std::string& relative) const {
  return m_Dir + "/" + relative;
}

void TempInstallation::Write(const std::string& relative, const std::string& content) const {
  Poco::Path file(Path(relative));
  Poco::File(file.parent()).createDirectories();
  std::ofstream out(file.toString(), std::ios::binary);
  out << content;
  if (!out) throw std::runtime_error("cannot write " + file.toString());
}

void TempInstallation::MakeDir(const std::string& relative) const {
  Poco::File(Path(relative)).createDirectories();
}

void TempInstallation::Remove(const std::string& relative) const {
  Poco::File(Path(relative)).remove(true);
}

std::string TempInstallation::MainFile(const std::string& settingsExtra,
                                       const std::string& mainExtra) {
  return "<?xml version=\"1.0\"?>\n<Configuration>\n"
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

void TempInstallation::WriteBase(const std::string& settingsExtra, const std::string& driverList,
                                 const std::string& mainExtra) const {
  Write("qr.cfg", MainFile(settingsExtra, mainExtra));
  Write("driver.cfg", "<DriverList>\n" + driverList + "</DriverList>\n");
  Write("platform.csl", "[TestOS]\nUTF-8 = UTF-8\nLatin = ISO-8859-1\n");
  MakeDir("setup");
}

TestPlatform::TestPlatform() {
  Process::Settings settings;
  settings.Name = "TestOS";
  settings.CharSetName = "UTF-8";
  settings.PlatformNames = {"TestOS", "TestFamily"};
  settings.OSLists = {{"TestFamily", {"TestOS", "OtherOS"}}, {"TestOS", {"TestOS"}}};
  Process::Configure(settings);
}

TestPlatform::~TestPlatform() {
  Process::Reset();
}
