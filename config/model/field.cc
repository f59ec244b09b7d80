#include "qr_config/config/model/field.h"

#include <cstring>
#include <new>

#include "qr_config/platform/qr_error.h"

using Field = ConfigManagerTypes::Field;

namespace {

// Made once when the library is loaded; each mismatch throws a copy.
const QRError kTypeMismatch(3, 256, QRErrorCode::TypeMismatch);

[[noreturn]] void ThrowTypeMismatch() {
  throw kTypeMismatch;
}

bool IsText(Field::ValueTag tag) {
  return tag == Field::String || tag == Field::UTF8String;
}

}  // namespace

// --- Storage -------------------------------------------------------------------------------
// The payload is raw bytes: values and the block address are copied in and out with memcpy,
// so the payload needs no alignment of its own.

Field::Storage::Storage(ValueTag tag, const char* text, std::size_t size, void* room) {
  Store(text, size, room);
  m_Tag = tag;
}

Field::Storage::Storage(std::int32_t value) noexcept : m_Tag(Long) {
  std::memcpy(m_Payload, &value, sizeof value);
}

Field::Storage::Storage(bool value) noexcept : m_Tag(Bool) {
  m_Payload[0] = value ? 1 : 0;
}

Field::Storage::Storage(const Storage& other, void* room) {
  // A short text lives in the payload with its length, like the other values: copying the
  // payload copies it.
  if (IsText(other.m_Tag) && other.OutOfLine()) {
    Store(other.TextData(), other.TextSize(), room);
  } else {
    std::memcpy(m_Payload, other.m_Payload, kPayloadBytes);
  }
  m_Tag = other.m_Tag;
}

Field::Storage::~Storage() {
  Release();
}

void Field::Storage::swap(Storage& other) noexcept {
  std::swap(m_Tag, other.m_Tag);
  unsigned char payload[kPayloadBytes];
  std::memcpy(payload, m_Payload, kPayloadBytes);
  std::memcpy(m_Payload, other.m_Payload, kPayloadBytes);
  std::memcpy(other.m_Payload, payload, kPayloadBytes);
}

bool Field::Storage::OutOfLine() const noexcept {
  return m_Payload[kInlineBytes] >= kLent;
}

const unsigned char* Field::Storage::TextBlock() const noexcept {
  const unsigned char* block;
  std::memcpy(&block, m_Payload, sizeof block);
  return block;
}

const char* Field::Storage::TextData() const noexcept {
  if (!OutOfLine()) return reinterpret_cast<const char*>(m_Payload);
  return reinterpret_cast<const char*>(TextBlock() + sizeof(std::size_t));
}

std::size_t Field::Storage::TextSize() const noexcept {
  if (!OutOfLine()) return m_Payload[kInlineBytes];
  std::size_t size;
  std::memcpy(&size, TextBlock(), sizeof size);
  return size;
}

std::int32_t Field::Storage::Integer() const noexcept {
  std::int32_t value;
  std::memcpy(&value, m_Payload, sizeof value);
  return value;
}

bool Field::Storage::Boolean() const noexcept {
  return m_Payload[0] != 0;
}

void Field::Storage::Store(const char* text, std::size_t size, void* room) {
  if (size <= kInlineBytes) {
    if (size != 0) std::memcpy(m_Payload, text, size);
    m_Payload[kInlineBytes] = static_cast<unsigned char>(size);
    return;
  }
  if (size > static_cast<std::size_t>(-1) - sizeof size) throw std::bad_alloc();
  auto* block =
      room != nullptr ? static_cast<unsigned char*>(room) : new unsigned char[sizeof size + size];
  std::memcpy(block, &size, sizeof size);
  std::memcpy(block + sizeof size, text, size);
  std::memcpy(m_Payload, &block, sizeof block);
  m_Payload[kInlineBytes] = room != nullptr ? kLent : kOnHeap;
}

void Field::Storage::Release() noexcept {
  if (IsText(m_Tag) && m_Payload[kInlineBytes] == kOnHeap) delete[] TextBlock();
}

void Field::Storage::SetText(const char* text, std::size_t size) {
  Storage replacement(m_Tag, text, size);  // may throw; this value is untouched then
  swap(replacement);
}

void Field::Storage::SetLong(std::int32_t value) noexcept {
  std::memcpy(m_Payload, &value, sizeof value);
}

void Field::Storage::SetBool(bool value) noexcept {
  m_Payload[0] = value ? 1 : 0;
}

bool Field::Storage::operator==(const Storage& other) const noexcept {
  if (m_Tag != other.m_Tag) return false;
  switch (m_Tag) {
    case None:
      return true;
    case String:
    case UTF8String: {
      const std::size_t size = TextSize();
      return size == other.TextSize() && std::memcmp(TextData(), other.TextData(), size) == 0;
    }
    case Long:
      return Integer() == other.Integer();
    case Bool:
      return Boolean() == other.Boolean();
  }
  return false;
}

// --- Field ---------------------------------------------------------------------------------

Field::Field() = default;

Field::Field(const std::string& name, const std::string& value)
    : m_Name(name), m_Value(String, value.data(), value.size()) {}

Field::Field(const std::string& name, const char* value)
    : m_Name(name), m_Value(String, value, std::strlen(value)) {}

Field::Field(const std::string& name, const orv_utf8string& value)
    : m_Name(name), m_Value(UTF8String, value.data(), value.size()) {}

Field::Field(const std::string& name, std::int32_t value) : m_Name(name), m_Value(value) {}

Field::Field(const std::string& name, bool value) : m_Name(name), m_Value(value) {}

Field::Field(const Field& other) = default;

Field::Field(const Field& other, void* room) : m_Name(other.m_Name), m_Value(other.m_Value, room) {}

Field::Field(const std::string& name, const std::string& value, void* room)
    : m_Name(name), m_Value(String, value.data(), value.size(), room) {}

std::size_t Field::OutOfLineBytes(std::size_t size) noexcept {
  if (size <= Storage::kInlineBytes) return 0;
  const std::size_t most = static_cast<std::size_t>(-1);
  return size > most - sizeof size ? most : sizeof size + size;  // no room is that large
}

std::size_t Field::OutOfLineBytes() const noexcept {
  return IsText(m_Value.Tag()) ? OutOfLineBytes(m_Value.TextSize()) : 0;
}

Field& Field::operator=(const Field& other) {
  if (this != &other) {
    // Copy first, then swap: a failed copy leaves this field as it was.
    std::string name(other.m_Name);
    Storage value(other.m_Value);
    m_Name.swap(name);
    m_Value.swap(value);
  }
  return *this;
}

Field::~Field() = default;

void Field::Value(std::string& out) const {
  if (m_Value.Tag() != String) ThrowTypeMismatch();
  out.assign(m_Value.TextData(), m_Value.TextSize());
}
void Field::Value(orv_utf8string& out) const {
  if (m_Value.Tag() != UTF8String) ThrowTypeMismatch();
  out.assign(m_Value.TextData(), m_Value.TextSize());
}
void Field::Value(std::int32_t& out) const {
  if (m_Value.Tag() != Long) ThrowTypeMismatch();
  out = m_Value.Integer();
}
void Field::Value(bool& out) const {
  if (m_Value.Tag() != Bool) ThrowTypeMismatch();
  out = m_Value.Boolean();
}

void Field::Update(const std::string& value) {
  if (m_Value.Tag() != String) ThrowTypeMismatch();
  m_Value.SetText(value.data(), value.size());
}
void Field::Update(const char* value) {
  if (m_Value.Tag() != String) ThrowTypeMismatch();
  m_Value.SetText(value, std::strlen(value));
}
void Field::Update(const orv_utf8string& value) {
  if (m_Value.Tag() != UTF8String) ThrowTypeMismatch();
  m_Value.SetText(value.data(), value.size());
}
void Field::Update(std::int32_t value) {
  if (m_Value.Tag() != Long) ThrowTypeMismatch();
  m_Value.SetLong(value);
}
void Field::Update(bool value) {
  if (m_Value.Tag() != Bool) ThrowTypeMismatch();
  m_Value.SetBool(value);
}

bool Field::operator==(const Field& other) const {
  return m_Name == other.m_Name && m_Value == other.m_Value;
}

// The packed layout is what keeps a loaded configuration small; see the class comment.
static_assert(sizeof(void*) != 8 || sizeof(Field) == 56, "Field grew beyond 56 bytes");
