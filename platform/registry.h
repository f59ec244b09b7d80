// Registry: the component's registry parameters, name to text.
//
// The host sets the parameters with SetParameter before the configuration is initialised;
// the start-up sequence takes a snapshot with Registry() and reads it in name order. The one
// parameter the library itself needs is "Config Directory"; when the host has not set it, the
// environment variable QR_CONFIG_DIR supplies it (read when the snapshot is taken; an unset
// or empty variable supplies nothing).
//
// Threads: the process-wide parameter table is guarded by one mutex (not re-entrant), held
// only inside SetParameter, ClearParameters and the constructor. A snapshot is an ordinary
// value owned by its holder.
#pragma once

#include <map>
#include <string>

#include "qr_config/platform/qr_export.h"

class QR_API Registry {
 public:
  // The parameter whose value names the configuration directory.
  static constexpr const char* kConfigDirectory = "Config Directory";
  // The environment variable that supplies "Config Directory" when the host set none.
  static constexpr const char* kConfigDirectoryVariable = "QR_CONFIG_DIR";

  class QR_API Parameter {
   public:
    Parameter(std::string name, std::string value)
        : m_Name(std::move(name)), m_Value(std::move(value)) {}
    const std::string& Name() const { return m_Name; }
    // Copies the parameter's text into `value` and returns it.
    std::string& Value(std::string& value) const {
      value = m_Value;
      return value;
    }

   private:
    std::string m_Name;
    std::string m_Value;
  };

  // Sets or replaces the parameter `name` of the process-wide table.
  static void SetParameter(const std::string& name, const std::string& value);
  // Empties the process-wide table.
  static void ClearParameters();

  // Snapshot of the process-wide table, plus "Config Directory" from QR_CONFIG_DIR when the
  // table has none. Later changes to the table do not reach it.
  Registry();

  // The parameters by name, in byte-wise name order.
  const std::map<std::string, Parameter>& Parameters() const { return m_Parameters; }

 private:
  std::map<std::string, Parameter> m_Parameters;
};
