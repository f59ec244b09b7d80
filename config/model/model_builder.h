// ModelBuilder: how the library's own loaders fill field lists and trees in bulk. Internal.
#pragma once

#include <cstddef>
#include <string>
#include <utility>

#include "qr_config/config/model/field_list.h"
#include "qr_config/config/model/tree.h"

// The loaders know more than a caller of the public operations: how many fields a node is
// about to receive, and that a field they add cannot be equal to one already there (its name
// is new to the node). These operations let them say so, so that a node's fields take one
// block and no addition scans the list. Each gives the same content as the public operation
// it stands for; only the number of allocations and scans differs. A text that a field keeps
// in its list's block is not released when the field is removed, only with the block.
class ModelBuilder {
 public:
  using Field = ConfigManagerTypes::Field;

  // Makes sure that the next `count` additions to `list` take no new block, and that the
  // block has `textBytes` bytes for the long texts of the fields that AppendCopy and
  // AppendText add (TextBytes tells how many each needs).
  template <typename T>
  static void Reserve(tnode<T>& list, std::size_t count, std::size_t textBytes = 0) {
    list.Reserve(count, textBytes);
  }

  // The bytes of a list's block that a copy of `field`, or a text of `size` bytes, takes:
  // none unless its text is too long to live inside the field.
  static std::size_t TextBytes(const Field& field) noexcept { return field.OutOfLineBytes(); }
  static std::size_t TextBytes(std::size_t size) noexcept { return Field::OutOfLineBytes(size); }

  // Appends a copy of `field`, like Append, with its long text in the bytes reserved in the
  // list's block when enough are left (else in an allocation of its own, as any copy).
  static Field& AppendCopy(tnode<Field>& list, const Field& field) {
    return list.Append(field, list.TakeBytes(field.OutOfLineBytes()));
  }
  // Appends a String field named `name` holding `text`, like Append, with a long text in the
  // bytes reserved in the list's block when enough are left.
  static Field& AppendText(tnode<Field>& list, const std::string& name, const std::string& text) {
    return list.Append(name, text, list.TakeBytes(Field::OutOfLineBytes(text.size())));
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
