#include "qr_config/platform/registry.h"

#include <cstdlib>
#include <mutex>

namespace {

// The process-wide table and its mutex; both live until the library is unloaded.
struct Table {
  std::mutex Mutex;
  std::map<std::string, std::string> Values;  // guarded by Mutex
};

Table& GlobalTable() {
  static Table table;
  return table;
}

}  // namespace

void Registry::SetParameter(const std::string& name, const std::string& value) {
  Table& table = GlobalTable();
  std::lock_guard<std::mutex> lock(table.Mutex);
  table.Values[name] = value;
}

void Registry::ClearParameters() {
  Table& table = GlobalTable();
  std::lock_guard<std::mutex> lock(table.Mutex);
  table.Values.clear();
}

Registry::Registry() {
  {
    Table& table = GlobalTable();
    std::lock_guard<std::mutex> lock(table.Mutex);
    for (const auto& [name, value] : table.Values)
      m_Parameters.emplace(name, Parameter(name, value));
  }
  if (m_Parameters.count(kConfigDirectory) == 0) {
    const char* directory = std::getenv(kConfigDirectoryVariable);
    if (directory != nullptr && *directory != '\0') {
      m_Parameters.emplace(kConfigDirectory, Parameter(kConfigDirectory, directory));
    }
  }
}
