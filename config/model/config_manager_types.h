// The scope of the configuration model's named types.
//
// ConfigManager (config/manager) holds a Tree and NodePaths by value, so the four model
// types cannot be nested in it directly. They are nested in this empty class instead, which
// ConfigManager derives from; callers spell them ConfigManager::NodePath, ConfigManager::Field,
// ConfigManager::Node and ConfigManager::Tree. Each is defined in its own header:
// node_path.h, field.h, node.h and config_tree.h.
#pragma once

#include "qr_config/platform/qr_export.h"

class QR_API ConfigManagerTypes {
 public:
  class NodePath;
  class Field;
  class Node;
  class Tree;

 protected:
  ConfigManagerTypes() = default;
  ~ConfigManagerTypes() = default;
};
