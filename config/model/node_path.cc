#include "qr_config/config/model/node_path.h"

using NodePath = ConfigManagerTypes::NodePath;

NodePath::NodePath(const std::string& text) : stdx::path(text, generic, kSeparator) {}

NodePath::NodePath(const std::string& parent, const std::string& name)
    : stdx::path(parent, name, generic, kSeparator) {}

NodePath::NodePath(const NodePath& other) = default;

// Deliberately a copy: the source keeps its value.
NodePath::NodePath(NodePath&& other) : stdx::path(other) {}

NodePath& NodePath::operator=(const NodePath& other) = default;

NodePath& NodePath::operator=(NodePath&& other) {
  stdx::path::operator=(other);
  return *this;
}

NodePath::~NodePath() = default;
