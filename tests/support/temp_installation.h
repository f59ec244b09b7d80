// The installation builder of every test folder: a fresh temporary directory, removed with
// the object, files written from text, and the documents of a small installation for the
// test platform (TestPlatform below).
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

// The seven file kinds of an installation, each at a fixed place (Relative).
enum class FileKind { Main, DriverList, Setup, DataAccess, Localized, PlatformList, CharSetTable };

const char* KindName(FileKind kind);
void PrintTo(FileKind kind, std::ostream* out);
const std::vector<FileKind>& AllKinds();
inline bool IsXml(FileKind kind) {
  return kind != FileKind::PlatformList && kind != FileKind::CharSetTable;
}

inline constexpr const char* kXmlDeclaration = "<?xml version=\"1.0\"?>\n";
// The probe value of every baseline document.
inline constexpr const char* kBaselinePayload = "v1";

inline std::string ParameterElement(const std::string& name, const std::string& value) {
  return "<Parameter Name=\"" + name + "\">" + value + "</Parameter>";
}

// An XML declaration and a document type declaration whose entity "l10" expands to 10^10
// times "lol".
std::string BillionLaughs();
class TempInstallation {
 public:
  TempInstallation();
  ~TempInstallation();
  TempInstallation(const TempInstallation&) = delete;
  TempInstallation& operator=(const TempInstallation&) = delete;

  const std::string& Dir() const { return m_Dir; }
  std::string Path(const std::string& relative) const { return m_Dir + "/" + relative; }
  // Writes `content` to `relative`, creating the parent directories; returns the full path.
  std::string Write(const std::string& relative, const std::string& content) const;
  void MakeDir(const std::string& relative) const;
  void Remove(const std::string& relative) const;

  // qr.cfg (MainFile), driver.cfg with the NetworkLayer elements `driverList`, platform.csl
  // and an empty setup directory.
  void WriteBase(const std::string& settingsExtra = "", const std::string& driverList = "",
                 const std::string& mainExtra = "") const;
  // setup/<file>.setup for `driver` (SetupFile) and its data-access file d/<file>/<file>.dsf
  // holding `databases`; `file` is the driver's name unless given.
  void WriteDriver(const std::string& driver, const std::string& databases,
                   std::string file = "") const;

  // A main file: locales en and, on TestFamily, fr_FR; the driver-area settings (setup, dsf,
  // sqx and csl extensions, "Ignore Driver Load Failure" No) then `settingsExtra` inside
  // Settings; `mainExtra` after Settings.
  static std::string MainFile(const std::string& settingsExtra = "",
                              const std::string& mainExtra = "");
  // A setup file: directory d/<file>, data file <file>, client version 1.2, then `extra`.
  static std::string SetupFile(const std::string& driver, const std::string& file,
                               const std::string& extra = "");

  // The probe installation: a document of each kind for the native driver "Crv" and its
  // active database "db1", each carrying one probe value (the payload):
  //   Main          Settings parameter "Probe"     DriverList    the text of Crv's Alias
  //   Setup         Version of type "SetupProbe"   DataAccess    db1's parameter "Probe"
  //   Localized     Crv's "Comment" message        PlatformList  entry "Probe" of [TestOS]
  //   CharSetTable  entry "Probe" of [CharSets], the table of db1
  // For the XML kinds `prolog` takes the place of the XML declaration and `extra` is the last
  // content of the root element; the parameter files ignore both.
  static std::string Document(FileKind kind, const std::string& payload,
                              const std::string& prolog = kXmlDeclaration,
                              const std::string& extra = "");
  static const char* Relative(FileKind kind);
  std::string Path(FileKind kind) const { return Path(Relative(kind)); }
  // Replaces whatever is at the kind's path (file, directory or link) by `bytes`.
  void Write(FileKind kind, const std::string& bytes) const;
  void WriteDocument(FileKind kind, const std::string& payload,
                     const std::string& prolog = kXmlDeclaration,
                     const std::string& extra = "") const {
    Write(kind, Document(kind, payload, prolog, extra));
  }
  // The kind's baseline document with its first `from` replaced by `to`.
  void WriteEdited(FileKind kind, const std::string& from, const std::string& to) const;
  // Every kind's document with the baseline payload.
  void WriteBaseline() const;

 private:
  std::string m_Dir;
};

// The running platform "TestOS" of the family "TestFamily", also answering to "p2", with the
// character set UTF-8; OSList("TestFamily") is {"TestOS", "OtherOS"}. Reset on destruction.
class TestPlatform {
 public:
  TestPlatform();
  ~TestPlatform();
  TestPlatform(const TestPlatform&) = delete;
  TestPlatform& operator=(const TestPlatform&) = delete;
};
