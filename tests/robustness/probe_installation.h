// An installation whose every file carries one probe value, and the outcome of a start-up
// over it as one line of text, so that a table can state the exact result of a broken or
// hostile file of any kind.
//
// The installation (inside a TempInstallation, for the test platform "TestOS"): the main
// file with the standard driver-area settings (Library mode does not ignore driver-load
// failures), a driver list with the native driver "Crv", its setup file, its data-access
// file declaring the active database "db1", the character-set table of db1, the platform
// character-set list and the English localised driver file. Each file holds the probe at
// one place:
//
//   kind          where the probe stands                  what Probe() reads back
//   Main          Settings parameter "Probe"               field Probe of \Quorin\DBDrivers
//   DriverList    the text of Crv's "Alias"                every alias of Crv, byte order
//   Setup         "Version" of type "SetupProbe"           field SetupProbe of db1
//   DataAccess    db1's parameter "Probe"                  field Probe of db1
//   Localized     Crv's "Comment" message                  Comment of GetLocalizedDriver
//   PlatformList  entry "Probe" of section [TestOS]        GetPlatformCharSet("Probe")
//   CharSetTable  entry "Probe" of section [CharSets]      GetCharSetTableEntry of db1
//
// Outcome() renders the start-up as "ok <probe>" or as the QRError "<code> <argument>",
// where the installation's directory in an argument reads "@". Values render as 'text'
// (String and UTF8String), 42 (Long) or true/false (Bool); a probe that fails renders its
// QRError the same way, so "ok 5 \Quorin\DBDrivers\Crv\db1" means db1 was not loaded.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "qr_config/qr_config.h"
#include "support/temp_installation.h"

enum class FileKind { Main, DriverList, Setup, DataAccess, Localized, PlatformList, CharSetTable };

const char* KindName(FileKind kind);
// True for the XML kinds, false for the two parameter files.
inline bool IsXml(FileKind kind) {
  return kind != FileKind::PlatformList && kind != FileKind::CharSetTable;
}
const std::vector<FileKind>& AllKinds();

// The value every baseline file carries as its probe.
inline constexpr const char* kBaselinePayload = "v1";
// The XML declaration of the baseline documents.
inline constexpr const char* kXmlDeclaration = "<?xml version=\"1.0\"?>\n";

// What a file does to the start-up, independent of the file's kind.
struct Expect {
  enum Result { Loads, ParseFails, FileFails };
  Result Type = Loads;
  std::string Probe;      // Loads: the rendered probe
  std::int32_t Code = 0;  // ParseFails: the XML layer's parse code, 45 to 48
  // ParseFails: where the parse stops, which decides what a data-access file has already
  // added in Server mode: nothing (InProlog), db1 without its probe (InProbe), or all (AtEnd).
  enum Site { InProlog, InProbe, AtEnd };
  Site FaultSite = InProlog;
  // Loads: the probe of readers that deliver the text differently (the driver-file readers
  // take every chunk of character data on its own).
  std::map<FileKind, std::string> ProbeOf;

  Expect Except(FileKind kind, const std::string& probe) const {
    Expect copy = *this;
    copy.ProbeOf[kind] = probe;
    return copy;
  }
};
inline Expect Loads(const std::string& probe) {
  return {Expect::Loads, probe, 0, {}, {}};
}
inline Expect ParseFails(std::int32_t code, Expect::Site site) {
  return {Expect::ParseFails, "", code, site, {}};
}
// A parameter file that SFile refuses, whatever its exception kind.
inline Expect FileFails() {
  return {Expect::FileFails, "", 0, {}, {}};
}

// The outcome that a file of `kind` with the result `expect` must give in `mode`:
//  - main file and driver list: the parse code becomes 264 to 267 with the file's path;
//  - setup file: skipped in Server mode (db1 missing); in Library mode 264 to 267 with the
//    setup file's path (file codes pass the start-up unchanged);
//  - data-access file: skipped in Server mode, keeping what it had added before the fault;
//    in Library mode start-up code 10;
//  - localised file: start-up succeeds, GetLocalizedDriver raises 264 to 267 with its path;
//  - platform list: start-up code 10; character-set table: db1 gets no table (262 Crv).
std::string ExpectedOutcome(FileKind kind, Initialization::Mode mode, const Expect& expect);

class ProbeInstallation {
 public:
  explicit ProbeInstallation(const TempInstallation& install) : m_Install(install) {}

  // Writes every file of the installation with the baseline payload.
  void WriteBaseline() const;

  // The file's text with `payload` as the probe. For the XML kinds `prolog` replaces the XML
  // declaration (it may add a document type declaration) and `extra` is inserted as the
  // last content of the root element (for the data-access file: after db1). The parameter
  // files ignore both.
  static std::string Document(FileKind kind, const std::string& payload,
                              const std::string& prolog = kXmlDeclaration,
                              const std::string& extra = "");

  static const char* Relative(FileKind kind);
  std::string Path(FileKind kind) const { return m_Install.Path(Relative(kind)); }
  // Replaces whatever is at the kind's path (file, directory or link) by `bytes`.
  void Write(FileKind kind, const std::string& bytes) const;
  void WriteDocument(FileKind kind, const std::string& payload,
                     const std::string& prolog = kXmlDeclaration,
                     const std::string& extra = "") const {
    Write(kind, Document(kind, payload, prolog, extra));
  }
  // Writes the kind's baseline document with its first `from` replaced by `to`.
  void WriteEdited(FileKind kind, const std::string& from, const std::string& to) const;
  const TempInstallation& Install() const { return m_Install; }

  // Initializes in `mode`, renders the outcome (see the file comment) and destroys the
  // manager again.
  std::string Outcome(FileKind kind, Initialization::Mode mode) const;
  // The rendered probe of `kind`; needs a manager.
  std::string Probe(FileKind kind) const;
  // "<code>" or "<code> <argument>", the installation's directory shown as "@".
  std::string Render(const QRError& error) const;

 private:
  const TempInstallation& m_Install;
};

// Runs `work` in a child process and returns its result; when the child does not finish
// within `deadlineSeconds` it is killed and the result is "timed out", when it dies the
// result is "killed by signal N" or "exit N". So a crash or a hang of the library fails the
// test instead of killing or stalling the suite.
std::string InChild(const std::function<std::string()>& work, int deadlineSeconds = 60);

// A field's value as Outcome() renders it.
std::string RenderValue(const ConfigManager::Field& field);
// `utf8` in UTF-16, little endian, after a byte-order mark.
std::string ToUtf16(const std::string& utf8);
// An XML declaration and a document type declaration whose entity "l10" expands to 10^10
// times "lol".
std::string BillionLaughs();
// A "Parameter" element.
inline std::string ParameterElement(const std::string& name, const std::string& value) {
  return "<Parameter Name=\"" + name + "\">" + value + "</Parameter>";
}
// `count` nested elements named `name` around `inner`.
std::string Nest(int count, const std::string& name, const std::string& inner,
                 const std::string& attributes = "");
