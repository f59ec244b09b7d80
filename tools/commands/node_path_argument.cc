#include "commands/node_path_argument.h"

#include <algorithm>

namespace qrconfig {

ConfigManagerTypes::NodePath NodePathArgument(const std::string& text) {
  if (text.empty() || text.front() != '/') return ConfigManagerTypes::NodePath(text);
  std::string converted = text;
  std::replace(converted.begin(), converted.end(), '/', ConfigManagerTypes::NodePath::kSeparator);
  return ConfigManagerTypes::NodePath(converted);
}

}  // namespace qrconfig
