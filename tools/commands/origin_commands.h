// The commands that show the effective configuration with where each value came from: list,
// explain and diff. The library reports every field with its origin chain to a LoadObserver
// (ConfigStartup::Initialize with an observer that wants values); nothing here reads a file
// or decides where a value came from.
#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "cli/command_line.h"
#include "qr_config/config/manager/config_manager.h"
#include "qr_config/config/readers/load_observer.h"

namespace qrconfig {

// One value of an origin chain, copied out of the library's report.
struct OriginStep {
  std::string File;  // as the library opened it; empty for values from no file
  unsigned long Line = 0;
  std::string Source;  // "Settings", "Library section", "start-up fall-back", ...
  std::string Text;
};

// One field of the loaded configuration with its origin chain, newest first.
struct EffectiveField {
  std::string Path;                           // "\Quorin\DBDrivers\Corvane"
  const ConfigManager::Node* Node = nullptr;  // valid while the configuration is loaded
  const ConfigManager::Field* Field = nullptr;
  std::vector<OriginStep> Origins;
};

// The observer the three commands load with: it keeps every field whose node path text is
// `only` (every field when `only` is empty), in tree order.
class EffectiveFields : public LoadObserver {
 public:
  explicit EffectiveFields(std::string only = "") : m_Only(std::move(only)) {}
  bool WantsValues() const override { return true; }
  void OnValue(const LoadedValue& value) override;

  const std::vector<EffectiveField>& Fields() const { return m_Fields; }

 private:
  std::string m_Only;
  std::vector<EffectiveField> m_Fields;
};

// The node path text that the library reports for the node path argument `text` ("/Quorin/
// DBDrivers" and "\Quorin\DBDrivers" both give "\Quorin\DBDrivers").
std::string ReportedPath(const std::string& text);

// list: every field of the loaded configuration, one per line, "PATH<TAB>FIELD<TAB>TYPE<TAB>
// VALUE" (control characters of every column written as \xNN, so a field is one line with
// four columns), with --show-origin a fifth column FILE:LINE of the value's origin (or its
// source in parentheses when it comes from no file). With --json one array of objects
// {"path", "field", "type", "value", "origin"}.
int RunList(const Invocation& invocation, const EffectiveFields& fields, std::ostream& out);

// explain NODEPATH [FIELD]: each field of the node (or the fields named FIELD) with its value,
// the place that set it and every value it replaced:
//   Connection Timeout = 60   qr.cfg:49 (Library section), replaces 30 from qr.cfg:35 (Settings)
// With --json {"path", "fields": [{"name", "type", "value", "origin": [{"file", "line",
// "source", "value"}, ...]}]}. Throws LookupError for an unknown node, QRError 261 for a node
// without such a field.
int RunExplain(const Invocation& invocation, ConfigManager& config, const EffectiveFields& fields,
               std::ostream& out);

// A line of list (without origin) and the key that pairs it with the same field of another
// installation: the node path, the field name and its rank among the fields of that name in
// that node.
struct ComparableLine {
  std::string Key;
  std::string Line;
};

// The lines list prints for `fields`, with `directory` at the start of a text value written
// as "$DIR", so that two installations compare whatever their place.
std::vector<ComparableLine> ComparableLines(const std::vector<EffectiveField>& fields,
                                            const std::string& directory);

// diff DIR1 DIR2 once both are loaded: after "--- DIR1" and "+++ DIR2", each line of `left`
// whose field is missing or different in `right` ("-", followed by the other side's "+" line
// when the field has one), then the fields only `right` has ("+"), in tree order. With --json
// {"equal", "differences": [{"side": "-" or "+", "line"}]}. Returns 0 when the configurations
// agree, 1 when they differ.
int WriteDiff(const Invocation& invocation, const std::vector<ComparableLine>& left,
              const std::vector<ComparableLine>& right, std::ostream& out);

}  // namespace qrconfig
