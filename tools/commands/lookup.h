// Lookups of names the user typed, with the nearest known name when one fails.
#pragma once

#include <exception>
#include <string>

#include "qr_config/config/manager/config_manager.h"
#include "qr_config/platform/qr_error.h"

namespace qrconfig {

// A lookup that failed with the library's error, and the known name nearest to the one
// given (Suggestion), empty when there is none.
class LookupError : public std::exception {
 public:
  LookupError(const QRError& error, std::string suggestion)
      : m_Error(error), m_Suggestion(std::move(suggestion)) {}
  const QRError& Error() const noexcept { return m_Error; }
  const std::string& Suggestion() const noexcept { return m_Suggestion; }
  const char* what() const noexcept override { return m_Error.what(); }

 private:
  QRError m_Error;
  std::string m_Suggestion;
};

using TreeNode = tree_node<ConfigManager::Node>;

// ResolveDriverName; on QRError 22 throws LookupError with the nearest driver name or alias.
const std::string& ResolveDriver(ConfigManager& config, const std::string& name);

// ResolveDatabaseName; on QRError 13 throws LookupError with the nearest database name or
// alias of `driver` (a resolved driver name).
const std::string& ResolveDatabase(ConfigManager& config, const std::string& driver,
                                   const std::string& name);

// The node at the node path `text` (NodePathArgument). On QRError 5 throws LookupError with
// the path corrected at its first missing level, written with the separator `text` uses,
// when a child there is near; QRError 4 passes unchanged.
const TreeNode& FindNode(ConfigManager& config, const std::string& text);

// The first field of `node` named `name`; on QRError 261 throws LookupError with the nearest
// field name of the node.
const ConfigManager::Field& FindField(const ConfigManager::Node& node, const std::string& name);

}  // namespace qrconfig
