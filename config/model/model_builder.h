// ModelBuilder: how the library's own loaders fill field lists and trees in bulk. Internal.
#pragma once

#include <cstddef>
#include <utility>

#include "qr_config/config/model/field_list.h"
#include "qr_config/config/model/tree.h"

// The loaders know more than a caller of the public operations: how many fields a node is
// about to receive, and that a field they add cannot be equal to one already there (its name
// is new to the node). These operations let them say so, so that a node's fields take one
// block and no addition scans the list. Each gives the same content as the public operation
// it stands for; only the number of allocations and scans differs.
class ModelBuilder {
 public:
  // Makes sure that the next `count` additions to `list` take no new block.
  template <typename T>
  static void Reserve(tnode<T>& list, std::size_t count) {
    list.Reserve(count);
  }

  // Appends an element made from `args` (a T to copy, or the arguments of a T constructor)
  // without the duplicate test of push_back, as a copy of a list does; returns it. For a
  // caller that knows no equal element is present, this is push_back without its scan. On
  // failure nothing is added.
  template <typename T, typename... Args>
  static T& Append(tnode<T>& list, Args&&... args) {
    return list.Append(std::forward<Args>(args)...);
  }

  // Appends a child whose value is made from `args` (the arguments of a T constructor), as
  // ch_push_back does with a copy of a T made from them, without that temporary; returns
  // it. On failure nothing is added.
  template <typename T, typename... Args>
  static tree_node<T>& AppendChild(tree_node<T>& parent, Args&&... args) {
    return *parent.AppendChild(std::forward<Args>(args)...);
  }
};
