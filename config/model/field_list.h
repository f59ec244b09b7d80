// tnode<T>: the ordered list of fields that every configuration node carries, with its
// iterators node_iterator<T, D> and const_node_iterator<T, D>.
#pragma once

#include <cstddef>
#include <iterator>
#include <new>
#include <utility>

#include "qr_config/config/model/field.h"

template <typename T>
class tnode;
template <typename T, typename D>
class const_node_iterator;
class ModelBuilder;

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

  reference operator*() const { return tnode<T>::ValueOf(m_Link); }
  pointer operator->() const { return &tnode<T>::ValueOf(m_Link); }
  node_iterator& operator++() {
    m_Link = m_Link->Next;
    return *this;
  }
  node_iterator operator++(int) {
    node_iterator old = *this;
    m_Link = m_Link->Next;
    return old;
  }
  node_iterator& operator--() {
    m_Link = m_Link->Prev;
    return *this;
  }
  node_iterator operator--(int) {
    node_iterator old = *this;
    m_Link = m_Link->Prev;
    return old;
  }

  friend bool operator==(const node_iterator& a, const node_iterator& b) {
    return a.m_Link == b.m_Link;
  }
  friend bool operator!=(const node_iterator& a, const node_iterator& b) {
    return a.m_Link != b.m_Link;
  }

 private:
  friend class tnode<T>;
  friend class const_node_iterator<T, D>;
  using Link = typename tnode<T>::Link;
  explicit node_iterator(Link* link) : m_Link(link) {}

  Link* m_Link = nullptr;
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
  const_node_iterator(const node_iterator<T, D>& it) : m_Link(it.m_Link) {}  // NOLINT: implicit

  reference operator*() const { return tnode<T>::ValueOf(m_Link); }
  pointer operator->() const { return &tnode<T>::ValueOf(m_Link); }
  const_node_iterator& operator++() {
    m_Link = m_Link->Next;
    return *this;
  }
  const_node_iterator operator++(int) {
    const_node_iterator old = *this;
    m_Link = m_Link->Next;
    return old;
  }
  const_node_iterator& operator--() {
    m_Link = m_Link->Prev;
    return *this;
  }
  const_node_iterator operator--(int) {
    const_node_iterator old = *this;
    m_Link = m_Link->Prev;
    return old;
  }

  friend bool operator==(const const_node_iterator& a, const const_node_iterator& b) {
    return a.m_Link == b.m_Link;
  }
  friend bool operator!=(const const_node_iterator& a, const const_node_iterator& b) {
    return a.m_Link != b.m_Link;
  }

 private:
  friend class tnode<T>;
  using Link = typename tnode<T>::Link;
  explicit const_node_iterator(const Link* link) : m_Link(link) {}

  const Link* m_Link = nullptr;
};

// A doubly linked list of T (instantiated for ConfigManager::Field) whose adding operations
// refuse an element equal (T::operator==) to one already in the list; elements with equal
// names but different values or kinds stand side by side. The duplicate test and every
// lookup are linear scans from the front; lists are small. Element count is O(1).
//
// Copying a list copies every element in order, without the duplicate test. Not
// synchronised.
//
// Storage: the elements live in a few blocks that the list owns, never one allocation per
// element. A copy takes one block of exactly its size; a list that grows by single additions
// takes blocks of at least 4 elements, each about a quarter of the list's size. An element
// never moves: its address stays valid until it is removed. The slot of a removed element is
// reused by later additions; the blocks are released when the list becomes empty (clear, or
// removing its last element) and when it is destroyed. The library's loaders may also keep
// the long texts of the fields they add in a block (ModelBuilder); such a text lasts as long
// as the block.
//
// Preconditions (not checked): front, back, pop_front and pop_back need a non-empty list;
// the one-iterator erase needs an iterator to an element, not end().
template <typename T>
class tnode {
 public:
  using iterator = node_iterator<T, long long>;
  using const_iterator = const_node_iterator<T, long long>;

  tnode() noexcept = default;
  // A copy in one block. On failure (memory) nothing is left behind.
  tnode(const tnode& other) : tnode() {
    Reserve(other.m_Size);
    for (const T& value : other) Append(value);
  }
  // Replaces the content by copies of the other list's elements; self-assignment changes
  // nothing. On failure (memory) this list keeps its old content.
  tnode& operator=(const tnode& other) {
    if (this != &other) {
      tnode copy(other);
      Swap(copy);
    }
    return *this;
  }
  virtual ~tnode() { Release(); }

  iterator begin() { return iterator(m_Head.Next); }
  iterator end() { return iterator(&m_Head); }
  const_iterator begin() const { return const_iterator(m_Head.Next); }
  const_iterator end() const { return const_iterator(&m_Head); }

  std::size_t size() const noexcept { return m_Size; }
  bool empty() const noexcept { return m_Size == 0; }
  T& front() { return ValueOf(m_Head.Next); }
  const T& front() const { return ValueOf(m_Head.Next); }
  T& back() { return ValueOf(m_Head.Prev); }
  const T& back() const { return ValueOf(m_Head.Prev); }

  // Appends a copy of `value` and returns true, unless an equal element is present: then
  // returns false and changes nothing.
  bool push_back(const T& value) {
    if (FindEqual(value) != &m_Head) return false;
    Insert(&m_Head, value);
    return true;
  }
  // The same, inserting at the front.
  bool push_front(const T& value) {
    if (FindEqual(value) != &m_Head) return false;
    Insert(m_Head.Next, value);
    return true;
  }
  // Inserts a copy of `value` just before `pos` (end() appends) and returns (its iterator,
  // true), unless an equal element is present: then returns (the first equal one, false).
  std::pair<iterator, bool> insert(iterator pos, const T& value) {
    Link* const equal = FindEqual(value);
    if (equal != &m_Head) return {iterator(equal), false};
    return {iterator(Insert(pos.m_Link, value)), true};
  }

  void erase(iterator pos) { Remove(pos.m_Link); }
  // Removes [first, last).
  void erase(iterator first, iterator last) {
    while (first != last) Remove((first++).m_Link);
  }

  // Removes every element equal to `value` in one pass; the others keep their order. `value`
  // may be an element of this list: it is compared with the others and removed last.
  void remove(const T& value) {
    Link* self = nullptr;
    for (Link* link = m_Head.Next; link != &m_Head;) {
      Link* const next = link->Next;
      if (&ValueOf(link) == &value) {
        self = link;
      } else if (ValueOf(link) == value) {
        Remove(link);
      }
      link = next;
    }
    if (self != nullptr) Remove(self);
  }

  void clear() noexcept {
    Release();
    m_Head.Prev = m_Head.Next = &m_Head;
    m_Size = 0;
  }
  void pop_front() { Remove(m_Head.Next); }
  void pop_back() { Remove(m_Head.Prev); }

 private:
  template <typename, typename>
  friend class node_iterator;
  template <typename, typename>
  friend class const_node_iterator;
  // The library's loaders size and fill lists through it (model_builder.h).
  friend class ::ModelBuilder;

  struct Link {
    Link* Prev;
    Link* Next;
  };
  struct Element : Link {
    template <typename... Args>
    explicit Element(Args&&... args) : Link{nullptr, nullptr}, Value(std::forward<Args>(args)...) {}
    T Value;
  };
  // A block of element slots, which follow the header, and then of `Bytes` bytes for texts;
  // the first `Used` slots and `BytesUsed` bytes have been handed out. Blocks are chained,
  // the newest first.
  struct Block {
    Block* Next;
    std::size_t Capacity;
    std::size_t Used;
    std::size_t Bytes;
    std::size_t BytesUsed;
  };
  static constexpr std::size_t kHeaderBytes =
      (sizeof(Block) + alignof(Element) - 1) / alignof(Element) * alignof(Element);
  static constexpr std::size_t kMinimumBlock = 4;

  static T& ValueOf(Link* link) { return static_cast<Element*>(link)->Value; }
  static const T& ValueOf(const Link* link) { return static_cast<const Element*>(link)->Value; }
  static Element* SlotsOf(Block* block) {
    return reinterpret_cast<Element*>(reinterpret_cast<unsigned char*>(block) + kHeaderBytes);
  }

  Link* FindEqual(const T& value) {
    Link* link = m_Head.Next;
    while (link != &m_Head && !(ValueOf(link) == value)) link = link->Next;
    return link;
  }

  // Makes sure that the next `count` additions take no new block, and that `bytes` bytes
  // for texts are at hand in the newest block: adds one block for what is missing.
  void Reserve(std::size_t count, std::size_t bytes = 0) {
    std::size_t room = m_Blocks != nullptr ? m_Blocks->Capacity - m_Blocks->Used : 0;
    for (Link* slot = m_Free; slot != nullptr && room < count; slot = slot->Next) ++room;
    const std::size_t byteRoom = m_Blocks != nullptr ? m_Blocks->Bytes - m_Blocks->BytesUsed : 0;
    if (room < count || byteRoom < bytes) AddBlock(count > room ? count - room : 0, bytes);
  }

  // Adds a block of `capacity` slots and `bytes` bytes as the newest; the unused slots of the
  // block that was the newest join the free slots.
  void AddBlock(std::size_t capacity, std::size_t bytes = 0) {
    const std::size_t most = static_cast<std::size_t>(-1);
    if (capacity > (most - kHeaderBytes) / sizeof(Element) ||
        bytes > most - kHeaderBytes - capacity * sizeof(Element))
      throw std::bad_alloc();
    void* memory = ::operator new(kHeaderBytes + capacity * sizeof(Element) + bytes);
    if (m_Blocks != nullptr) {
      Element* slots = SlotsOf(m_Blocks);
      while (m_Blocks->Used < m_Blocks->Capacity) FreeSlot(&slots[m_Blocks->Used++]);
    }
    m_Blocks = ::new (memory) Block{m_Blocks, capacity, 0, bytes, 0};
  }

  // `bytes` bytes for a text from the blocks' text room, lasting as long as the list's
  // blocks; null when `bytes` is 0 or no block has that much left.
  void* TakeBytes(std::size_t bytes) noexcept {
    if (bytes == 0) return nullptr;
    for (Block* block = m_Blocks; block != nullptr; block = block->Next) {
      if (block->Bytes - block->BytesUsed < bytes) continue;
      unsigned char* text = reinterpret_cast<unsigned char*>(SlotsOf(block) + block->Capacity);
      block->BytesUsed += bytes;
      return text + block->BytesUsed - bytes;
    }
    return nullptr;
  }

  // Chains the raw slot at `slot` (no element lives there) to the free slots.
  void FreeSlot(void* slot) noexcept { m_Free = ::new (slot) Link{nullptr, m_Free}; }

  // Raw memory for one element: a free slot, the next slot of the newest block, or the first
  // of a new block.
  void* TakeSlot() {
    if (m_Free != nullptr) {
      Link* slot = m_Free;
      m_Free = slot->Next;
      return slot;
    }
    if (m_Blocks == nullptr || m_Blocks->Used == m_Blocks->Capacity)
      AddBlock(m_Size / 4 > kMinimumBlock ? m_Size / 4 : kMinimumBlock);
    return &SlotsOf(m_Blocks)[m_Blocks->Used++];
  }

  // Makes an element from `args` and links it just before `pos`. On failure nothing changes
  // but the slot, which stays free.
  template <typename... Args>
  Link* Insert(Link* pos, Args&&... args) {
    void* slot = TakeSlot();
    Element* element;
    try {
      element = ::new (slot) Element(std::forward<Args>(args)...);
    } catch (...) {
      FreeSlot(slot);
      throw;
    }
    element->Prev = pos->Prev;
    element->Next = pos;
    pos->Prev->Next = element;
    pos->Prev = element;
    ++m_Size;
    return element;
  }
  template <typename... Args>
  T& Append(Args&&... args) {
    return ValueOf(Insert(&m_Head, std::forward<Args>(args)...));
  }

  void Remove(Link* link) noexcept {
    link->Prev->Next = link->Next;
    link->Next->Prev = link->Prev;
    Element* const element = static_cast<Element*>(link);
    void* const slot = element;
    element->~Element();
    --m_Size;
    if (m_Size == 0) {
      clear();
    } else {
      FreeSlot(slot);
    }
  }

  // Destroys every element and releases every block; leaves the links dangling.
  void Release() noexcept {
    for (Link* link = m_Head.Next; link != &m_Head;) {
      Link* const next = link->Next;
      static_cast<Element*>(link)->~Element();
      link = next;
    }
    while (m_Blocks != nullptr) {
      Block* const next = m_Blocks->Next;
      ::operator delete(m_Blocks);
      m_Blocks = next;
    }
    m_Free = nullptr;
  }

  void Swap(tnode& other) noexcept {
    std::swap(m_Head, other.m_Head);
    std::swap(m_Size, other.m_Size);
    std::swap(m_Blocks, other.m_Blocks);
    std::swap(m_Free, other.m_Free);
    FixHead();
    other.FixHead();
  }
  // After the head moved: the first and last elements point at it again.
  void FixHead() noexcept {
    if (m_Size == 0) {
      m_Head.Prev = m_Head.Next = &m_Head;
    } else {
      m_Head.Next->Prev = &m_Head;
      m_Head.Prev->Next = &m_Head;
    }
  }

  Link m_Head{&m_Head, &m_Head};  // the end position; Next is the first element, Prev the last
  std::size_t m_Size = 0;
  Block* m_Blocks = nullptr;
  Link* m_Free = nullptr;  // slots of removed elements, chained through Next
};

// The library exports the list of fields with its iterators; callers use these instances.
// The list first: each iterator's declaration needs the list's own.
extern template class QR_API tnode<ConfigManagerTypes::Field>;
extern template class QR_API node_iterator<ConfigManagerTypes::Field, long long>;
extern template class QR_API const_node_iterator<ConfigManagerTypes::Field, long long>;
