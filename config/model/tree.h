// tree<T>: the n-ary tree that holds the configuration, with its nodes tree_node<T> and the
// child iterators tree_node_ch_iter<T> and const_tree_node_ch_iter<T>.
#pragma once

#include <cassert>
#include <cstddef>
#include <iterator>
#include <utility>
#include <vector>

#include "qr_config/config/model/node.h"

template <typename T>
class tree;
template <typename T>
class tree_node;
template <typename T>
class const_tree_node_ch_iter;
class ModelBuilder;

// Bidirectional iterator over one tree node's children; dereferences to the child's
// tree_node<T>&. Valid until that child is removed from the list.
template <typename T>
class tree_node_ch_iter {
 public:
  using iterator_category = std::bidirectional_iterator_tag;
  using value_type = tree_node<T>;
  using difference_type = std::ptrdiff_t;
  using pointer = tree_node<T>*;
  using reference = tree_node<T>&;

  tree_node_ch_iter() = default;

  reference operator*() const { return *m_Child; }
  pointer operator->() const { return m_Child; }
  tree_node_ch_iter& operator++() {
    m_Child = m_Child->m_Next;
    return *this;
  }
  tree_node_ch_iter operator++(int) {
    tree_node_ch_iter old = *this;
    ++*this;
    return old;
  }
  tree_node_ch_iter& operator--() {
    m_Child = m_Child != nullptr ? m_Child->m_Prev : m_Parent->m_FirstChild->m_Prev;
    return *this;
  }
  tree_node_ch_iter operator--(int) {
    tree_node_ch_iter old = *this;
    --*this;
    return old;
  }

  friend bool operator==(const tree_node_ch_iter& a, const tree_node_ch_iter& b) {
    return a.m_Child == b.m_Child && (a.m_Child != nullptr || a.m_Parent == b.m_Parent);
  }
  friend bool operator!=(const tree_node_ch_iter& a, const tree_node_ch_iter& b) {
    return !(a == b);
  }

 private:
  friend class tree<T>;
  friend class tree_node<T>;
  friend class const_tree_node_ch_iter<T>;
  tree_node_ch_iter(tree_node<T>* child, tree_node<T>* parent) : m_Child(child), m_Parent(parent) {}

  tree_node<T>* m_Child = nullptr;   // null: the end position
  tree_node<T>* m_Parent = nullptr;  // whose children are walked
};

// The same over a const tree node: dereferences to const tree_node<T>&.
template <typename T>
class const_tree_node_ch_iter {
 public:
  using iterator_category = std::bidirectional_iterator_tag;
  using value_type = tree_node<T>;
  using difference_type = std::ptrdiff_t;
  using pointer = const tree_node<T>*;
  using reference = const tree_node<T>&;

  const_tree_node_ch_iter() = default;
  const_tree_node_ch_iter(const tree_node_ch_iter<T>& it)  // NOLINT: implicit
      : m_Child(it.m_Child), m_Parent(it.m_Parent) {}

  reference operator*() const { return *m_Child; }
  pointer operator->() const { return m_Child; }
  const_tree_node_ch_iter& operator++() {
    m_Child = m_Child->m_Next;
    return *this;
  }
  const_tree_node_ch_iter operator++(int) {
    const_tree_node_ch_iter old = *this;
    ++*this;
    return old;
  }
  const_tree_node_ch_iter& operator--() {
    m_Child = m_Child != nullptr ? m_Child->m_Prev : m_Parent->m_FirstChild->m_Prev;
    return *this;
  }
  const_tree_node_ch_iter operator--(int) {
    const_tree_node_ch_iter old = *this;
    --*this;
    return old;
  }

  friend bool operator==(const const_tree_node_ch_iter& a, const const_tree_node_ch_iter& b) {
    return a.m_Child == b.m_Child && (a.m_Child != nullptr || a.m_Parent == b.m_Parent);
  }
  friend bool operator!=(const const_tree_node_ch_iter& a, const const_tree_node_ch_iter& b) {
    return !(a == b);
  }

 private:
  friend class tree_node<T>;
  const_tree_node_ch_iter(const tree_node<T>* child, const tree_node<T>* parent)
      : m_Child(child), m_Parent(parent) {}

  const tree_node<T>* m_Child = nullptr;   // null: the end position
  const tree_node<T>* m_Parent = nullptr;  // whose children are walked
};

// One node of a tree: a value, a pointer to its parent (null for a root) and the ordered
// list of its children, which it owns. Children's names need not be unique. Not copyable:
// copy subtrees with tree<T>. Not synchronised.
//
// Storage: one allocation per tree node; the children list is made of links inside the
// children themselves, so a child costs no allocation of its own in its parent's list.
template <typename T>
class tree_node {
 public:
  using ch_iterator = tree_node_ch_iter<T>;
  using const_ch_iterator = const_tree_node_ch_iter<T>;

  // A node holding a copy of `value` under `parent` (null for a root), without children. It
  // is not linked into the parent's list: use ch_push_back to add a child.
  tree_node(const T& value, tree_node* parent) : m_Value(value), m_Parent(parent) {}
  // Destroys the value, not the children: the owning tree destroys subtrees
  // (tree<T>::destruct), every node exactly once.
  ~tree_node() = default;
  tree_node(const tree_node&) = delete;
  tree_node& operator=(const tree_node&) = delete;

  T& value() noexcept { return m_Value; }
  const T& value() const noexcept { return m_Value; }
  tree_node* parent() noexcept { return m_Parent; }
  const tree_node* parent() const noexcept { return m_Parent; }

  // Appends a new child holding a copy of `value` (no test for a child of the same name)
  // and returns its iterator. On failure (memory) nothing is added.
  ch_iterator ch_push_back(const T& value) { return ch_iterator(AppendChild(value), this); }
  // Destroys the child at `child` with its whole subtree and removes it from the list.
  // `child` must designate a child of this node.
  void ch_erase(ch_iterator child) noexcept {
    Unlink(child.m_Child);
    tree<T>::destruct(child.m_Child);
  }

  ch_iterator ch_begin() noexcept { return ch_iterator(m_FirstChild, this); }
  ch_iterator ch_end() noexcept { return ch_iterator(nullptr, this); }
  const_ch_iterator ch_begin() const noexcept { return const_ch_iterator(m_FirstChild, this); }
  const_ch_iterator ch_end() const noexcept { return const_ch_iterator(nullptr, this); }
  std::size_t ch_size() const noexcept { return m_ChildCount; }

 private:
  friend class tree<T>;
  friend class tree_node_ch_iter<T>;
  friend class const_tree_node_ch_iter<T>;
  // The library's loaders add children through it (model_builder.h).
  friend class ::ModelBuilder;

  struct InPlace {};
  // A node whose value is made from `args`, under `parent`, without children.
  template <typename... Args>
  tree_node(InPlace, tree_node* parent, Args&&... args)
      : m_Value(std::forward<Args>(args)...), m_Parent(parent) {}

  // Makes a child from `args` (a value to copy, or what makes one) and links it last.
  template <typename... Args>
  tree_node* AppendChild(Args&&... args) {
    tree_node* child = new tree_node(InPlace{}, this, std::forward<Args>(args)...);
    if (m_FirstChild == nullptr) {
      child->m_Prev = child;
      m_FirstChild = child;
    } else {
      tree_node* last = m_FirstChild->m_Prev;
      child->m_Prev = last;
      last->m_Next = child;
      m_FirstChild->m_Prev = child;
    }
    ++m_ChildCount;
    return child;
  }

  // Takes `child` out of this node's children; its own links are left as they were.
  void Unlink(tree_node* child) noexcept {
    if (child == m_FirstChild) {
      m_FirstChild = child->m_Next;
      if (m_FirstChild != nullptr) m_FirstChild->m_Prev = child->m_Prev;
    } else {
      child->m_Prev->m_Next = child->m_Next;
      if (child->m_Next != nullptr) {
        child->m_Next->m_Prev = child->m_Prev;
      } else {
        m_FirstChild->m_Prev = child->m_Prev;
      }
    }
    --m_ChildCount;
  }

  T m_Value;
  tree_node* m_Parent;
  tree_node* m_FirstChild = nullptr;
  tree_node* m_Prev = nullptr;  // previous sibling; the first child's is the last child
  tree_node* m_Next = nullptr;  // next sibling; null for the last child
  std::size_t m_ChildCount = 0;
};

// A tree of T (instantiated for ConfigManager::Node): a pointer to its root, null when empty.
// The tree owns every node; copying copies every node (same shape, values and child order,
// nothing shared). Destruction and copying do not recurse: any depth is fine (copying needs
// heap memory proportional to the depth). Not synchronised.
template <typename T>
class tree {
 public:
  tree() noexcept = default;
  // A one-node tree holding a copy of `value`.
  explicit tree(const T& value) : m_Root(new tree_node<T>(value, nullptr)) {}
  // A deep copy of the subtree under `node`; the copy's root has no parent.
  explicit tree(const tree_node<T>& node) : m_Root(copy(&node, nullptr)) {}
  tree(const tree& other) : m_Root(copy(other.m_Root, nullptr)) {}
  ~tree() { destruct(m_Root); }

  // Self-assignment changes nothing. Otherwise destroys all own nodes, then copies `other`;
  // if the copy fails (memory), this tree is left empty.
  tree& operator=(const tree& other) {
    if (this != &other) {
      clear();
      m_Root = copy(other.m_Root, nullptr);
    }
    return *this;
  }
  // Copies the subtree under `node` first, then replaces the whole content by it. `node` may
  // lie inside this tree. On failure (memory) the tree is unchanged.
  tree& operator=(const tree_node<T>& node) {
    tree_node<T>* made = copy(&node, nullptr);
    destruct(m_Root);
    m_Root = made;
    return *this;
  }
  // Replaces the whole content by a one-node tree holding a copy of `value`. On failure
  // (memory) the tree is unchanged.
  tree& operator=(const T& value) {
    tree_node<T>* made = new tree_node<T>(value, nullptr);
    destruct(m_Root);
    m_Root = made;
    return *this;
  }

  // Destroys all own nodes and takes `other`'s root, leaving `other` empty; nothing is
  // copied. Does nothing when `other` is this tree.
  tree& assign_cut(tree& other) noexcept {
    if (&other != this) {
      clear();
      std::swap(m_Root, other.m_Root);
    }
    return *this;
  }
  // Unlinks the child at `child` from `parent`'s children (its parent pointer becomes null),
  // then destroys all own nodes, then takes that child with its subtree as the new root;
  // nothing is copied. `child` must designate a child of `parent`, which may lie in this
  // tree or in another.
  tree& assign_cut(tree_node<T>& parent, tree_node_ch_iter<T> child) noexcept {
    tree_node<T>* taken = child.m_Child;
    parent.Unlink(taken);
    taken->m_Parent = nullptr;
    taken->m_Prev = taken->m_Next = nullptr;
    destruct(m_Root);
    m_Root = taken;
    return *this;
  }

  // The root. Precondition: the tree is not empty (checked by assert only).
  tree_node<T>& root() noexcept {
    assert(m_Root != nullptr);
    return *m_Root;
  }
  const tree_node<T>& root() const noexcept {
    assert(m_Root != nullptr);
    return *m_Root;
  }
  bool empty() const noexcept { return m_Root == nullptr; }
  void swap(tree& other) noexcept { std::swap(m_Root, other.m_Root); }
  void clear() noexcept {
    destruct(m_Root);
    m_Root = nullptr;
  }

 protected:
  // Destroys `node` and its whole subtree, depth first: each child's subtree before the
  // child, children in list order, `node` last. Null does nothing. The caller unlinks `node`
  // from its parent. Walks down and up through the parent pointers: no recursion and no
  // memory of its own, so it cannot fail.
  static void destruct(tree_node<T>* node) noexcept {
    if (node == nullptr) return;
    tree_node<T>* current = node;
    for (;;) {
      while (current->m_FirstChild != nullptr) current = current->m_FirstChild;
      if (current == node) break;
      tree_node<T>* parent = current->m_Parent;
      parent->Unlink(current);
      delete current;
      current = parent;
    }
    delete node;
  }

 private:
  friend class tree_node<T>;

  // A deep copy of the subtree under `source` whose root gets `parent`; null for null. Uses
  // an explicit stack instead of recursion. On failure the partial copy is destroyed.
  static tree_node<T>* copy(const tree_node<T>* source, tree_node<T>* parent) {
    if (source == nullptr) return nullptr;
    tree_node<T>* made = new tree_node<T>(source->m_Value, parent);
    try {
      struct Frame {
        const tree_node<T>* Next;  // next child to copy, null when done
        tree_node<T>* Copy;
      };
      std::vector<Frame> stack{{source->m_FirstChild, made}};
      while (!stack.empty()) {
        Frame& top = stack.back();
        if (top.Next == nullptr) {
          stack.pop_back();
          continue;
        }
        const tree_node<T>* child = top.Next;
        top.Next = child->m_Next;
        tree_node<T>* childCopy = top.Copy->AppendChild(child->m_Value);
        stack.push_back({child->m_FirstChild, childCopy});
      }
    } catch (...) {
      destruct(made);  // every node made so far is linked below `made`
      throw;
    }
    return made;
  }

  tree_node<T>* m_Root = nullptr;
};

// The library exports the configuration's tree types; callers use these instances.
extern template class QR_API tree_node_ch_iter<ConfigManagerTypes::Node>;
extern template class QR_API const_tree_node_ch_iter<ConfigManagerTypes::Node>;
extern template class QR_API tree_node<ConfigManagerTypes::Node>;
extern template class QR_API tree<ConfigManagerTypes::Node>;
