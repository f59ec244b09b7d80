// Findings of `qrconfig check`: what is wrong, where, and what to do.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace qrconfig {

// error: the library refuses the installation or a value (the load fails, or would fail in
// the other mode); warning: something silently has no effect, most likely a mistake; note:
// something is skipped by design (inactive or platform-specific databases, non-native
// drivers). The order is that of importance: a smaller value is more severe.
enum class Severity { Error, Warning, Note };

// "error", "warning" or "note".
const char* SeverityName(Severity severity);

// The kinds of findings; each is documented in docs/qrconfig.md with its usual severity.
namespace FindingKind {
inline constexpr const char* XmlError = "xml-error";              // a file is not readable XML
inline constexpr const char* MissingFile = "missing-file";        // a file the start-up needs
inline constexpr const char* UnknownElement = "unknown-element";  // the reader ignores it
inline constexpr const char* UnknownAttribute = "unknown-attribute";
inline constexpr const char* UnknownValue = "unknown-value";      // an attribute value ignored
inline constexpr const char* ValueType = "value-type";            // rejected where it is read
inline constexpr const char* ValueLayout = "value-layout";        // value not on its tag's line
inline constexpr const char* IgnoredElement = "ignored-element";  // known, but no effect there
inline constexpr const char* Structure = "structure";             // the main-file reader stops
inline constexpr const char* MissingSetting = "missing-setting";  // the start-up needs it
inline constexpr const char* NoLocale = "no-locale";              // none for the platform
inline constexpr const char* CharSetList = "charset-list";        // platform list unusable
inline constexpr const char* CharSetTable = "charset-table";      // a database gets no table
inline constexpr const char* SetupNoDriver = "setup-no-driver";
inline constexpr const char* UnknownDriver = "unknown-driver";
inline constexpr const char* NonNativeDriver = "non-native-driver";
inline constexpr const char* SetupSkipped = "setup-skipped";  // a ".32." setup file
inline constexpr const char* MissingDataFile = "missing-data-file";
inline constexpr const char* AliasCollision = "alias-collision";
inline constexpr const char* DriverSkipped = "driver-skipped";  // no active data source
inline constexpr const char* DatabaseSkipped = "database-skipped";
inline constexpr const char* LoadFailure = "load-failure";  // the library's own verdict
}  // namespace FindingKind

struct Finding {
  Severity Level = Severity::Error;
  std::string Kind;          // one of FindingKind
  std::string File;          // the path as the checks built it from the configuration
                             // directory's name, so usable from where qrconfig runs; may be empty
  unsigned long Line = 0;    // 1-based; 0 when there is no line
  unsigned long Column = 0;  // 1-based; 0 when there is no column
  std::string Message;       // what is wrong, as a sentence
  std::string Advice;        // what to do, as a sentence
};

// The findings of one check run, in the order they were added.
class Findings {
 public:
  explicit Findings(std::string configDirectory);

  // Adds a finding about the file at `path` (the configuration directory's name joined with
  // the file's place in it, or empty).
  void Add(Severity level, const char* kind, const std::string& path, unsigned long line,
           std::string message, std::string advice, unsigned long column = 0);

  const std::vector<Finding>& All() const { return m_Findings; }
  std::size_t Count(Severity level) const;
  // The findings of `threshold` or above, sorted by file (byte order; findings without a
  // file last), then by severity (errors first), then by line and column; findings that
  // tie keep the order they were added in.
  std::vector<const Finding*> Sorted(Severity threshold) const;
  const std::string& ConfigDirectory() const { return m_ConfigDirectory; }

 private:
  std::string m_ConfigDirectory;
  std::vector<Finding> m_Findings;
};

}  // namespace qrconfig
