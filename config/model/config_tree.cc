#include "qr_config/config/model/config_tree.h"

#include <string_view>

#include "qr_config/platform/qr_error.h"

using Node = ConfigManagerTypes::Node;
using NodePath = ConfigManagerTypes::NodePath;
using Tree = ConfigManagerTypes::Tree;

Tree::Tree(const std::string& rootName) : tree<Node>(Node(rootName)) {}

Tree::Tree(const Tree& other) = default;

// Deliberately a deep copy: the source keeps its content.
Tree::Tree(Tree&& other) : tree<Node>(other) {}

Tree& Tree::operator=(const Tree& other) = default;

Tree& Tree::operator=(Tree&& other) {
  tree<Node>::operator=(other);
  return *this;
}

Tree::~Tree() = default;

tree_node<Node>& Tree::Find(const NodePath& path) {
  return const_cast<tree_node<Node>&>(static_cast<const Tree&>(*this).Find(path));
}

const tree_node<Node>& Tree::Find(const NodePath& path) const {
  const int levels = path.levels();
  if (levels == 0) ThrowQRError(QRErrorCode::EmptyNodePath);
  // The levels are read in place from the path's text, which stdx::path keeps splitting into
  // exactly its levels; NodePath::operator[] would copy each name, and a lookup that
  // succeeds must not allocate.
  const char separator = path.separator();
  std::string_view rest = path.text();
  if (!rest.empty() && rest.front() == separator) rest.remove_prefix(1);
  auto nextLevel = [&rest, separator]() {
    const std::size_t end = rest.find(separator);
    const std::string_view level = rest.substr(0, end);
    rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
    return level;
  };
  if (empty() || root().value().Name() != nextLevel())
    ThrowQRError(QRErrorCode::NodeNotFound, static_cast<const char*>(path));
  const tree_node<Node>* current = &root();
  for (int level = 1; level < levels; ++level) {
    const std::string_view name = nextLevel();
    const tree_node<Node>* next = nullptr;
    for (auto child = current->ch_begin(); child != current->ch_end(); ++child) {
      if ((*child).value().Name() == name) {
        next = &*child;
        break;
      }
    }
    if (next == nullptr) ThrowQRError(QRErrorCode::NodeNotFound, static_cast<const char*>(path));
    current = next;
  }
  return *current;
}

bool Tree::Exists(const NodePath& path) const {
  try {
    Find(path);
    return true;
  } catch (const QRError&) {
    return false;
  }
}
