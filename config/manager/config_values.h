// Conveniences that read one typed value of the configuration in one call.
#pragma once

#include <cstdint>
#include <string>
#include <type_traits>

#include "qr_config/config/manager/config_manager.h"
#include "qr_config/platform/i18n_string.h"

namespace qr_config {

// The value of the first field named `field` of `node`, as T: std::string for a String
// field, orv_utf8string for a UTF8String field, std::int32_t for a Long field, bool for a
// Bool field (a field never converts). Throws QRError 261 (argument: the field name) when the
// node has no such field, QRError 1 when the field holds another type. Costs a linear scan
// of the node's fields and a copy of the value.
//   std::string library = qr_config::Value<std::string>(node, "Library");
template <typename T>
T Value(const ConfigManager::Node& node, const std::string& field) {
  static_assert(std::is_same_v<T, std::string> || std::is_same_v<T, orv_utf8string> ||
                    std::is_same_v<T, std::int32_t> || std::is_same_v<T, bool>,
                "a field holds std::string, orv_utf8string, std::int32_t or bool");
  T value{};
  node.Find(field).Value(value);
  return value;
}

// The same, but `fallback` when the node has no field named `field`. A field of another type
// still throws QRError 1: it is a mistake in the files, not a missing setting.
template <typename T>
T ValueOr(const ConfigManager::Node& node, const std::string& field, T fallback) {
  if (!node.Exists(field)) return fallback;
  return Value<T>(node, field);
}

// The node of a database, as a component knows it: `driver` and `database` may be names or
// aliases. Resolves both, then finds "\Quorin\DBDrivers\<driver>\<database>". Throws QRError
// 22 (unknown driver), 13 (unknown database) or 5 (no such node). The reference stays valid
// until ConfigStartup::Destroy.
//   const auto& crv19 = qr_config::DatabaseNode(config, "CRV", "CRV19");
//   std::int32_t port = qr_config::Value<std::int32_t>(crv19, "Port");
inline const ConfigManager::Node& DatabaseNode(ConfigManager& config, const std::string& driver,
                                               const std::string& database) {
  const std::string& driverName = config.ResolveDriverName(driver);
  ConfigManager::NodePath path(static_cast<const char*>(config.DBDrivers()), driverName);
  path += config.ResolveDatabaseName(driverName, database);
  return config.GetTree().Find(path).value();
}

}  // namespace qr_config
