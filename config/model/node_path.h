// ConfigManager::NodePath: the path of one node of the configuration tree.
#pragma once

#include <string>

#include "qr_config/config/model/config_manager_types.h"
#include "qr_config/platform/stdx_path.h"

// A node path: a stdx::path of kind 0 with the backslash as separator, such as
// "\Quorin\DBDrivers" (levels "Quorin" and "DBDrivers"). Level 0 names the tree's root.
// See stdx::path for how texts split into levels (leading, doubled and trailing backslashes,
// names that contain a backslash). No state or behaviour of its own.
//
// Moving a path copies it: the source keeps its value and stays usable.
class QR_API ConfigManagerTypes::NodePath : public stdx::path {
 public:
  static constexpr char kSeparator = '\\';

  // The path whose text is `text`. Implicit, so a text can be passed where a path is wanted.
  NodePath(const std::string& text);  // NOLINT: implicit
  // The path of the node `name` directly under the node at `parent` (a path text); the same
  // as NodePath(parent) += name.
  NodePath(const std::string& parent, const std::string& name);
  NodePath(const NodePath& other);
  NodePath(NodePath&& other);
  NodePath& operator=(const NodePath& other);
  NodePath& operator=(NodePath&& other);
  ~NodePath() override;
};
