#include "commands/lookup.h"

#include <vector>

#include "app/suggestion.h"
#include "commands/node_path_argument.h"

namespace qrconfig {

namespace {

std::vector<std::string> KeysOf(const std::map<std::string, std::string>& names) {
  std::vector<std::string> keys;
  for (const auto& entry : names) keys.push_back(entry.first);
  return keys;
}

}  // namespace

const std::string& ResolveDriver(ConfigManager& config, const std::string& name) {
  try {
    return config.ResolveDriverName(name);
  } catch (const QRError& error) {
    if (error.Code() != QRErrorCode::UnknownDriver) throw;
    throw LookupError(error, Suggestion(name, KeysOf(config.GetDriverNames())));
  }
}

const std::string& ResolveDatabase(ConfigManager& config, const std::string& driver,
                                   const std::string& name) {
  try {
    return config.ResolveDatabaseName(driver, name);
  } catch (const QRError& error) {
    if (error.Code() != QRErrorCode::UnknownDatabase) throw;
    throw LookupError(error, Suggestion(name, KeysOf(config.GetDatabaseNames(driver))));
  }
}

const TreeNode& FindNode(ConfigManager& config, const std::string& text) {
  const ConfigManager::NodePath path = NodePathArgument(text);
  try {
    return config.GetTree().Find(path);
  } catch (const QRError& error) {
    if (error.Code() != QRErrorCode::NodeNotFound) throw;
    // Walk down to the first missing level and look for a near child there.
    const TreeNode* node = &config.GetTree().root();
    const char separator = !text.empty() && text.front() == '/' ? '/' : path.separator();
    std::string corrected;
    for (int level = 0; level < path.levels(); ++level) {
      const std::string name = path[level];
      const TreeNode* next = nullptr;
      std::vector<std::string> names;
      if (level == 0) {
        names.push_back(node->value().Name());
        if (name == names.back()) next = node;
      } else {
        for (auto child = node->ch_begin(); child != node->ch_end(); ++child) {
          names.push_back((*child).value().Name());
          if (next == nullptr && names.back() == name) next = &*child;
        }
      }
      if (next == nullptr) {
        const std::string suggestion = Suggestion(name, names);
        if (suggestion.empty()) throw LookupError(error, "");
        corrected += separator + suggestion;
        for (int rest = level + 1; rest < path.levels(); ++rest)
          corrected += separator + path[rest];
        throw LookupError(error, corrected);
      }
      corrected += separator + name;
      node = next;
    }
    throw;
  }
}

const ConfigManager::Field& FindField(const ConfigManager::Node& node, const std::string& name) {
  try {
    return node.Find(name);
  } catch (const QRError& error) {
    if (error.Code() != QRErrorCode::MissingField) throw;
    std::vector<std::string> names;
    for (const auto& field : node) names.push_back(field.Name());
    throw LookupError(error, Suggestion(name, names));
  }
}

}  // namespace qrconfig
