// ConfigManager::Tree: the configuration tree, addressed by node paths.
#pragma once

#include <string>

#include "qr_config/config/model/config_manager_types.h"
#include "qr_config/config/model/node.h"
#include "qr_config/config/model/node_path.h"
#include "qr_config/config/model/tree.h"

class ConfigManager;

// The tree of the whole configuration, rooted at "Quorin", with lookup by NodePath. Level 0
// of a path must be the root's name, each further level the name of a child of the node
// reached so far; names compare exactly and the first child of a name wins. Each level is a
// linear scan of the children; lookups never create nodes. All tree<Node> operations are
// available through the base.
//
// Moving a Tree copies it: the source keeps its content. No lock of its own.
class QR_API ConfigManagerTypes::Tree : public tree<ConfigManagerTypes::Node> {
 public:
  Tree(const Tree& other);
  Tree(Tree&& other);
  Tree& operator=(const Tree& other);
  Tree& operator=(Tree&& other);
  ~Tree();

  // The tree node at `path`; the reference stays valid until that node is removed or the
  // tree destroyed. Throws QRError 4 (no argument) when the path has no level, QRError 5
  // with the path's text as argument when level 0 is not the root's name (also when the tree
  // is empty) or some level has no child of that name. A failed lookup changes nothing.
  tree_node<Node>& Find(const NodePath& path);
  const tree_node<Node>& Find(const NodePath& path) const;
  tree_node<Node>& operator[](const NodePath& path) { return Find(path); }
  const tree_node<Node>& operator[](const NodePath& path) const { return Find(path); }
  // Whether Find would succeed: false when it throws a QRError; other exceptions (memory)
  // pass through.
  bool Exists(const NodePath& path) const;

 protected:
  // A tree whose root holds a Node named `rootName` without fields or children. Made by
  // the manager alone.
  explicit Tree(const std::string& rootName);

 private:
  friend class ::ConfigManager;
};
