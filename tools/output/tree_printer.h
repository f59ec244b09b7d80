// TreePrinter: a configuration subtree as indented text or as JSON.
#pragma once

#include <ostream>
#include <string>

#include "output/json_writer.h"
#include "qr_config/config/model/tree.h"

namespace qrconfig {

class TreePrinter {
 public:
  using TreeNode = tree_node<ConfigManagerTypes::Node>;

  // Writes `node` and everything below it the way the `tree` command lays out directories:
  // the first line is `label`, then one line per field (FieldLine) followed by one line per
  // child node, each under its parent with the branches "├── ", "└── " and "│   ". Fields
  // come before child nodes; both keep their order. Iterative: any depth is fine. Below
  // kMaxDrawnLevels levels the branches are not drawn deeper; such lines start with the
  // node's level in brackets ("[level 70] name"), so that output stays linear in size.
  static constexpr std::size_t kMaxDrawnLevels = 64;
  static void WriteText(const TreeNode& node, const std::string& label, std::ostream& out);

  // Writes `node` as one JSON object {"path", "name", "fields": [...], "children": [...]},
  // each child an object of the same shape without "path"; `path` is the text of the node's
  // path. Iterative: any depth is fine.
  static void WriteJson(const TreeNode& node, const std::string& path, JsonWriter& json);
};

}  // namespace qrconfig
