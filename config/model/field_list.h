// tnode<T>: the ordered list of fields that every configuration node carries, with its
// iterators node_iterator<T, D> and const_node_iterator<T, D>.
#pragma once

#include <cstddef>
#include <iterator>
#include <list>
#include <utility>

#include "qr_config/config/model/field.h"

template <typename T>
class tnode;
template <typename T, typename D>
class const_node_iterator;

// Bidirectional iterator over a tnode<T>; dereferences to T&, difference type D. It stays
// valid while other elements are added or removed; removing its own element invalidates it.
template <typename T, typename D>
class node_iterator {
 public:
  using iterator_category = std::bidirectional_iterator_tag;
  using value_type = T;
  using difference_type = D;
  using pointer = T*;
  using reference = T&;

  node_iterator() = default;

  reference operator*() const { return *m_It; }
  pointer operator->() const { return &*m_It; }
  node_iterator& operator++() {
    ++m_It;
    return *this;
  }
  node_iterator operator++(int) { return node_iterator(m_It++); }
  node_iterator& operator--() {
    --m_It;
    return *this;
  }
  node_iterator operator--(int) { return node_iterator(m_It--); }

  friend bool operator==(const node_iterator& a, const node_iterator& b) {
    return a.m_It == b.m_It;
  }
  friend bool operator!=(const node_iterator& a, const node_iterator& b) {
    return a.m_It != b.m_It;
  }

 private:
  friend class tnode<T>;
  friend class const_node_iterator<T, D>;
  using Base = typename std::list<T>::iterator;
  explicit node_iterator(Base it) : m_It(it) {}

  Base m_It{};
};

// The same over a const tnode<T>: dereferences to const T&. A node_iterator converts to it.
template <typename T, typename D>
class const_node_iterator {
 public:
  using iterator_category = std::bidirectional_iterator_tag;
  using value_type = T;
  using difference_type = D;
  using pointer = const T*;
  using reference = const T&;

  const_node_iterator() = default;
  const_node_iterator(const node_iterator<T, D>& it) : m_It(it.m_It) {}  // NOLINT: implicit

  reference operator*() const { return *m_It; }
  pointer operator->() const { return &*m_It; }
  const_node_iterator& operator++() {
    ++m_It;
    return *this;
  }
  const_node_iterator operator++(int) { return const_node_iterator(m_It++); }
  const_node_iterator& operator--() {
    --m_It;
    return *this;
  }
  const_node_iterator operator--(int) { return const_node_iterator(m_It--); }

  friend bool operator==(const const_node_iterator& a, const const_node_iterator& b) {
    return a.m_It == b.m_It;
  }
  friend bool operator!=(const const_node_iterator& a, const const_node_iterator& b) {
    return a.m_It != b.m_It;
  }

 private:
  friend class tnode<T>;
  using Base = typename std::list<T>::const_iterator;
  explicit const_node_iterator(Base it) : m_It(it) {}

  Base m_It{};
};

// A doubly linked list of T (instantiated for ConfigManager::Field) whose adding operations
// refuse an element equal (T::operator==) to one already in the list; elements with equal
// names but different values or kinds stand side by side. The duplicate test and every
// lookup are linear scans from the front; lists are small. Element count is O(1).
//
// Copying a list copies every element in order, without the duplicate test. Not
// synchronised.
//
// Preconditions (not checked): front, back, pop_front and pop_back need a non-empty list;
// the one-iterator erase needs an iterator to an element, not end().
template <typename T>
class tnode {
 public:
  using iterator = node_iterator<T, long long>;
  using const_iterator = const_node_iterator<T, long long>;

  tnode() = default;
  tnode(const tnode& other) = default;
  // Replaces the content by copies of the other list's elements; self-assignment changes
  // nothing. On failure (memory) this list keeps its old content.
  tnode& operator=(const tnode& other) {
    if (this != &other) {
      std::list<T> copy(other.m_List);
      m_List.swap(copy);
    }
    return *this;
  }
  virtual ~tnode() = default;

  iterator begin() { return iterator(m_List.begin()); }
  iterator end() { return iterator(m_List.end()); }
  const_iterator begin() const { return const_iterator(m_List.begin()); }
  const_iterator end() const { return const_iterator(m_List.end()); }

  std::size_t size() const noexcept { return m_List.size(); }
  bool empty() const noexcept { return m_List.empty(); }
  T& front() { return m_List.front(); }
  const T& front() const { return m_List.front(); }
  T& back() { return m_List.back(); }
  const T& back() const { return m_List.back(); }

  // Appends a copy of `value` and returns true, unless an equal element is present: then
  // returns false and changes nothing.
  bool push_back(const T& value) {
    if (FindEqual(value) != m_List.end()) return false;
    m_List.push_back(value);
    return true;
  }
  // The same, inserting at the front.
  bool push_front(const T& value) {
    if (FindEqual(value) != m_List.end()) return false;
    m_List.push_front(value);
    return true;
  }
  // Inserts a copy of `value` just before `pos` (end() appends) and returns (its iterator,
  // true), unless an equal element is present: then returns (the first equal one, false).
  std::pair<iterator, bool> insert(iterator pos, const T& value) {
    const auto equal = FindEqual(value);
    if (equal != m_List.end()) return {iterator(equal), false};
    return {iterator(m_List.insert(pos.m_It, value)), true};
  }

  void erase(iterator pos) { m_List.erase(pos.m_It); }
  // Removes [first, last).
  void erase(iterator first, iterator last) { m_List.erase(first.m_It, last.m_It); }

  // Removes every element equal to `value` in one pass; the others keep their order. `value`
  // may be an element of this list: it is compared with the others and removed last.
  void remove(const T& value) {
    auto self = m_List.end();
    for (auto it = m_List.begin(); it != m_List.end();) {
      if (&*it == &value) {
        self = it++;
      } else if (*it == value) {
        it = m_List.erase(it);
      } else {
        ++it;
      }
    }
    if (self != m_List.end()) m_List.erase(self);
  }

  void clear() noexcept { m_List.clear(); }
  void pop_front() { m_List.pop_front(); }
  void pop_back() { m_List.pop_back(); }

 private:
  typename std::list<T>::iterator FindEqual(const T& value) {
    auto it = m_List.begin();
    while (it != m_List.end() && !(*it == value)) ++it;
    return it;
  }

  std::list<T> m_List;
};

// The library exports the list of fields with its iterators; callers use these instances.
extern template class QR_API node_iterator<ConfigManagerTypes::Field, long long>;
extern template class QR_API const_node_iterator<ConfigManagerTypes::Field, long long>;
extern template class QR_API tnode<ConfigManagerTypes::Field>;
