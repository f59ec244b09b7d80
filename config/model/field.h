// ConfigManager::Field: one named, strictly typed value of the configuration.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <type_traits>

#include "qr_config/config/model/config_manager_types.h"
#include "qr_config/platform/i18n_string.h"

template <typename T>
class tnode;
class ModelBuilder;

// A field is a name and one value of a fixed kind: a text, a UTF-8 text, a signed 32-bit
// integer or a boolean (or nothing, for a default-made field). The kind is set when the field
// is made and changes only when another field is assigned to it. A field never converts:
// every Value and Update whose argument type differs from the field's kind throws QRError
// code 1 (no argument) and leaves both the field and the output argument unchanged.
//
// Overloads: a text literal makes or updates a String field, never a Bool one; an int
// literal makes a Long field. Every other arithmetic type (long, long long, unsigned types,
// char types, floating point) is a compile error, as is nullptr: cast to std::int32_t or
// bool explicitly, so that a value can neither be narrowed nor land in the wrong kind silently.
//
// Copying copies the name and the value (texts are duplicated, never shared). There are no
// move operations: moving a field copies it. Not synchronised.
//
// Size: a configuration holds millions of fields, most of them copies of defaults, so the
// layout is packed: the virtual table pointer, the name, the 32-bit tag and 12 bytes of value,
// 56 bytes in all. Texts of up to 11 bytes live inside the field; longer ones in one heap block
// of their own, or, for a field the library's loaders made in a node (ModelBuilder), in the
// block of the node's field list, released with that block.
class QR_API ConfigManagerTypes::Field {
 public:
  // The kind of value a field holds; a 32-bit enumeration.
  enum ValueTag : std::int32_t { None = 0, String = 1, UTF8String = 2, Long = 3, Bool = 4 };

  // Empty name, tag None.
  Field();
  // Tag String.
  Field(const std::string& name, const std::string& value);
  // Tag String, holding the NUL-terminated text; `value` must not be null.
  Field(const std::string& name, const char* value);
  // Tag UTF8String.
  Field(const std::string& name, const orv_utf8string& value);
  // Tag Long.
  Field(const std::string& name, std::int32_t value);
  // Tag Bool.
  Field(const std::string& name, bool value);
  template <typename T, typename = std::enable_if_t<std::is_arithmetic_v<T>>>
  Field(const std::string& name, T value) = delete;
  Field(const std::string& name, std::nullptr_t) = delete;

  Field(const Field& other);
  // Copies name, tag and value; self-assignment changes nothing. On failure (memory) this
  // field keeps its old content.
  Field& operator=(const Field& other);
  virtual ~Field();

  const std::string& Name() const noexcept { return m_Name; }
  // The name, like Name().
  operator const std::string&() const noexcept { return m_Name; }  // NOLINT: implicit
  ValueTag ValueType() const noexcept { return m_Value.Tag(); }

  // Copy the value into `out` when the tag matches; otherwise throw QRError 1.
  void Value(std::string& out) const;
  void Value(orv_utf8string& out) const;
  void Value(std::int32_t& out) const;
  void Value(bool& out) const;

  // Replace the value when the tag matches; otherwise throw QRError 1. The tag never
  // changes. If copying a text fails for lack of memory, the field keeps its old text.
  void Update(const std::string& value);
  // Updates a String field with the NUL-terminated text; `value` must not be null.
  void Update(const char* value);
  void Update(const orv_utf8string& value);
  void Update(std::int32_t value);
  void Update(bool value);
  template <typename T, typename = std::enable_if_t<std::is_arithmetic_v<T>>>
  void Update(T value) = delete;
  void Update(std::nullptr_t) = delete;

  // Equal when the names are the same bytes, the tags are equal and the values are equal
  // (texts byte for byte; two None fields are equal). A String and a UTF8String field with
  // the same name and text differ.
  bool operator==(const Field& other) const;
  bool operator==(const Field& other) { return static_cast<const Field&>(*this) == other; }
  bool operator!=(const Field& other) const { return !(*this == other); }
  bool operator!=(const Field& other) { return !(static_cast<const Field&>(*this) == other); }

 private:
  // The library's loaders make fields in a list whose blocks hold their long texts.
  friend class tnode<ConfigManagerTypes::Field>;
  friend class ::ModelBuilder;

  // Bytes that a text of `size` bytes takes outside the field: none when it fits inside.
  static std::size_t OutOfLineBytes(std::size_t size) noexcept;
  // The same for a copy of this field's value (none unless it is a long text).
  std::size_t OutOfLineBytes() const noexcept;
  // A copy of `other`, and a String field, as the public constructors make them, except that
  // a text too long for the field is written to `room` (OutOfLineBytes of it, in memory that
  // the list holding the field owns and releases with itself) instead of a heap block of the
  // field's own. A null `room` gives the public constructors' result.
  Field(const Field& other, void* room);
  Field(const std::string& name, const std::string& value, void* room);

  // The tag and the value, with the ownership of a text value. Texts of up to kInlineBytes
  // bytes are held in the payload, followed by their length in its last byte; a longer text
  // lives outside (its length, then its bytes) at an address that fills the payload's first
  // bytes, and the last byte says where: kOnHeap, a heap block the value owns, or kLent,
  // memory it was given and never releases. Copies duplicate the text into a heap block.
  class Storage {
   public:
    Storage() noexcept = default;
    // Tag String or UTF8String; a long text goes to `room` when it is not null.
    Storage(ValueTag tag, const char* text, std::size_t size, void* room = nullptr);
    explicit Storage(std::int32_t value) noexcept;
    explicit Storage(bool value) noexcept;
    Storage(const Storage& other, void* room = nullptr);
    Storage& operator=(const Storage&) = delete;
    ~Storage();

    void swap(Storage& other) noexcept;
    ValueTag Tag() const noexcept { return m_Tag; }
    // The text of a String or UTF8String value.
    const char* TextData() const noexcept;
    std::size_t TextSize() const noexcept;
    std::int32_t Integer() const noexcept;
    bool Boolean() const noexcept;
    // Replace the text, keeping the tag; on failure the old text stays.
    void SetText(const char* text, std::size_t size);
    void SetLong(std::int32_t value) noexcept;
    void SetBool(bool value) noexcept;
    bool operator==(const Storage& other) const noexcept;

    static constexpr std::size_t kPayloadBytes = 12;
    static constexpr std::size_t kInlineBytes = kPayloadBytes - 1;

   private:
    static constexpr unsigned char kOnHeap = 0xFF;
    static constexpr unsigned char kLent = 0xFE;

    bool OutOfLine() const noexcept;
    const unsigned char* TextBlock() const noexcept;
    // Writes `text` into the empty payload: inline, or at `room`, or in a new heap block.
    void Store(const char* text, std::size_t size, void* room);
    void Release() noexcept;

    ValueTag m_Tag = None;
    unsigned char m_Payload[kPayloadBytes] = {};
  };

  std::string m_Name;
  Storage m_Value;
};
