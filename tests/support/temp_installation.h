// A configuration directory built in a fresh temporary directory for one test, removed
// with the object. Files are written from text; a minimal valid installation is one call.
#pragma once

#include <string>

class TempInstallation {
 public:
  TempInstallation();
  ~TempInstallation();
  TempInstallation(const TempInstallation&) = delete;
  TempInstallation& operator=(const TempInstallation&) = delete;

  const std::string& Dir() const { return m_Dir; }
  // The full path of `relative` inside the directory.
  std::string Path(const std::string& relative) const;
  // Writes `content` to `relative`, creating the parent directories.
  void Write(const std::string& relative, const std::string& content) const;
  void MakeDir(const std::string& relative) const;
  void Remove(const std::string& relative) const;

  // A small complete installation: qr.cfg (locales for the test platform "TestOS", the
  // driver-area settings with the given extra parameters, no drivers), driver.cfg with the
  // given NetworkLayer elements, platform.csl and an empty setup directory.
  void WriteBase(const std::string& settingsExtra = "", const std::string& driverList = "",
                 const std::string& mainExtra = "") const;

  // A main file with the standard settings; `settingsExtra` lands inside "Settings" before
  // the mode sections, `mainExtra` after "Settings".
  static std::string MainFile(const std::string& settingsExtra = "",
                              const std::string& mainExtra = "");

 private:
  std::string m_Dir;
};

// Describes the test platform: running platform "TestOS" in the family "TestFamily"
// (PlatformNames {"TestOS", "TestFamily"}), character set "UTF-8"; OSList("TestFamily")
// gives {"TestOS", "OtherOS"}. Reset on destruction.
class TestPlatform {
 public:
  TestPlatform();
  ~TestPlatform();
  TestPlatform(const TestPlatform&) = delete;
  TestPlatform& operator=(const TestPlatform&) = delete;
};
