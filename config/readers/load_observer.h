// LoadObserver: what the start-up and its readers report about the files they read.
//
// The start-up sequence and the readers make every decision about what a configuration file
// means: which value a field gets, which element is skipped, which database or driver is
// left out and why, which name wins a name table, which error ends the start-up. A host or a
// tool that wants to know hands an observer to ConfigStartup::Initialize; the library then
// reports each decision as it takes it. Without an observer nothing is reported and nothing
// is recorded: the start-up does the same work at the same cost.
//
// Everything here is reported on the thread that runs Initialize, during that call. Texts
// handed to a callback (std::string_view members, the pointed-to objects) are valid only
// until the callback returns: copy what you keep. A callback must not call back into the
// library's start-up, and should not throw: an exception it throws is handled like an error
// of the library raised at that point (a QRError may be tolerated by the loader's policy, for
// instance), so the start-up's outcome would then depend on the observer.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "qr_config/config/model/config_manager_types.h"
#include "qr_config/platform/qr_export.h"

// The kinds of files the start-up reads.
enum class FileRole {
  MainFile,             // "qr.cfg"
  DriverList,           // "driver.cfg"
  SetupDirectory,       // the "setup" directory, listed
  SetupFile,            // an entry of the setup directory
  DataAccessFile,       // a driver's data-access file, named by its setup file
  ExtensionMarker,      // an extension marker file beside a data-access file
  PlatformCharSetList,  // "platform.<CharSet List Extension>"
  CharSetTable,         // a database's character-set table
  LocalizedDriverFile,  // "driver<locale>.cfg" and its fall-backs
};

// "main file", "driver list", "setup directory", "setup file", "data-access file", "extension
// marker", "platform character-set list", "character-set table", "localised driver file".
QR_API const char* FileRoleName(FileRole role);

// How much a diagnostic matters, decided by the library for the mode it runs in:
//  - Error: the start-up fails because of it;
//  - Warning: something silently has no effect, a driver or database is lost, a name does
//    not resolve as written, or the texts of a locale cannot be had: most likely a mistake;
//  - Note: something is left out by design (an inactive or foreign-platform database, a
//    driver of another implementation, a 32-bit setup file, a driver without texts in a
//    locale).
enum class DiagnosticSeverity { Error, Warning, Note };

// "error", "warning" or "note".
QR_API const char* DiagnosticSeverityName(DiagnosticSeverity severity);

// What a diagnostic is about. Each has a stable name (DiagnosticKindName) for tools and
// scripts; docs/qrconfig.md lists them with examples.
enum class DiagnosticKind {
  XmlError,            // "xml-error": a file is not readable, well-formed XML
  MissingFile,         // "missing-file": a file or directory the start-up needs is missing
  UnknownElement,      // "unknown-element": an element the reader does not know, passed over
  UnknownAttribute,    // "unknown-attribute": an attribute the element does not read
  UnknownValue,        // "unknown-value": an attribute value the reader does not know
  CaseVariant,         // "case-variant": a keyword written in other letter case than the
                       //   reader compares with, so it counts as another word
  ValueType,           // "value-type": a value whose type is refused where it is read
  ValueLayout,         // "value-layout": a value the reader takes other than it is written
  IgnoredElement,      // "ignored-element": a known element without effect where it stands
  DuplicateSetting,    // "duplicate-setting": a setting given twice; the first one counts
  Structure,           // "structure": the main-file reader cannot place an element
  MissingSetting,      // "missing-setting": a setting the start-up reads is missing
  NoLocale,            // "no-locale": no locale table for the running platform
  CharSetList,         // "charset-list": the platform character-set list is unusable
  CharSetTable,        // "charset-table": a database asks for a table but gets none
  SetupSkipped,        // "setup-skipped": a setup-directory entry that is not read
  StraySetupFile,      // "stray-setup-file": an entry read as a setup file though its name
                       //   does not end in the setup extension (an editor's backup, say)
  SetupNoDriver,       // "setup-no-driver": a setup file that names no driver
  DuplicateSetup,      // "duplicate-setup": a second setup file of a driver
  UnknownDriver,       // "unknown-driver": a driver name the driver list does not declare
  NonNativeDriver,     // "non-native-driver": a driver the library does not load
  DriverSkipped,       // "driver-skipped": a driver left out by the active data sources
  DriverWithoutSetup,  // "driver-without-setup": a loadable driver no setup file names
  MissingDataFile,     // "missing-data-file": the data-access file of a setup file is missing
  NameCollision,       // "name-collision": a name or alias that an earlier entry took
  DatabaseSkipped,     // "database-skipped": a database that is not loaded, and why
  InvalidPattern,      // "invalid-pattern": an active data-source pattern that cannot compile
  MissingTexts,        // "missing-texts": a localised driver file without texts for a driver
  MissingName,         // "missing-name": an entry that loads under the empty name
  LoadFailure,         // "load-failure": an error that ends the start-up, not covered above
};

// The kind's stable name, for example "unknown-element".
QR_API const char* DiagnosticKindName(DiagnosticKind kind);

// A place in a file. File is the path as the library opened it (directory prefix included);
// empty when the subject is not in any file (a registry parameter, a built-in default, a
// host's registration). Line and Column are 1-based; 0 when unknown. Lines are those of the
// start tag concerned, as the XML layer counts them.
struct SourceLocation {
  std::string_view File;
  unsigned long Line = 0;
  unsigned long Column = 0;
};

// One decision of the library worth telling an administrator.
struct LoadDiagnostic {
  DiagnosticSeverity Severity = DiagnosticSeverity::Error;
  DiagnosticKind Kind = DiagnosticKind::LoadFailure;
  SourceLocation Where;
  // What happened and what it leads to, as one or more sentences.
  std::string_view Message;
  // The name the diagnostic is about as written (an element, attribute or value, a driver,
  // database or setting name); empty when there is none.
  std::string_view Subject;
  // The names that Subject could have meant here (the elements a reader knows, the
  // attributes of an element, the drivers of the driver list), for a tool that suggests the
  // nearest spelling; null when there is no such set.
  const std::vector<std::string>* Candidates = nullptr;
  // The QRError code the library raised (or, for a failure the start-up tolerates, would
  // have raised) for this; 0 when no error is involved.
  std::int32_t Code = 0;
};

// A file the start-up read, or passed over.
struct LoadedFile {
  FileRole Role = FileRole::MainFile;
  std::string_view Path;
  // True when the file is read (reported before reading; a failure follows as a
  // diagnostic); false when it is passed over, Reason saying why.
  bool Read = true;
  std::string_view Reason;
};

// Where a field's value came from: the place that set it, how, and the value it replaced.
// Origins form a chain from the newest to the first value a field of that name had in that
// node (a database's chain goes on into the defaults it inherited).
struct ValueOrigin {
  SourceLocation Where;  // File empty for values that come from no file
  // How the value was set: "Settings" (also for a parameter of a node the main file makes
  // inside <Settings>), "Library section", "Server section", "DriverDefaults", "Traces",
  // "Defaults" or "DataBase" (of a data-access file), "Libraries", "setup file", "registry
  // parameter", "start-up fall-back", "extension marker".
  std::string_view Source;
  std::string_view Text;                  // the value as this origin set it, in text form
  const ValueOrigin* Replaced = nullptr;  // the value this one replaced, or null
};

// One field of the configuration tree as the start-up left it.
struct LoadedValue {
  // The node path of the field's node, "\Quorin\DBDrivers\Corvane\crv19" for example.
  std::string_view NodePath;
  const ConfigManagerTypes::Node* Node = nullptr;
  const ConfigManagerTypes::Field* Field = nullptr;
  const ValueOrigin* Origin = nullptr;  // null when the library cannot tell
};

// Receives what the start-up reports. Every operation has an empty default, so an observer
// overrides only what it needs. The three Wants... operations are asked once, when the
// start-up begins.
class QR_API LoadObserver {
 public:
  virtual ~LoadObserver();

  // When true, an error that would end the start-up is reported and the start-up goes on
  // with the next step it can still take (the next file, the next database), so that one
  // run reports every problem it can reach. Initialize still fails, with the same exception
  // as without an observer: the first error that ended a step. Default false.
  virtual bool WantsKeepGoing() const { return false; }
  // When true, OnValue reports every field of the tree with its origin once the start-up
  // has run (also after a failure, for what was loaded). Default false.
  virtual bool WantsValues() const { return false; }
  // When true, the start-up also reads, for diagnostics alone, the localised driver file
  // that GetLocalizedDriver would read for each locale of the running platform and for the
  // "en" fall-back, and reports what a later request would meet. The manager keeps nothing
  // of that reading. Default false.
  virtual bool WantsOnDemandFiles() const { return false; }

  virtual void OnFile(const LoadedFile& file);
  virtual void OnDiagnostic(const LoadDiagnostic& diagnostic);
  virtual void OnValue(const LoadedValue& value);

 protected:
  LoadObserver() = default;
  LoadObserver(const LoadObserver&) = default;
  LoadObserver& operator=(const LoadObserver&) = default;
};
