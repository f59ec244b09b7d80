#include "config/model/field.h"

#include "config/manager/qr_error.h"

using Field = ConfigManagerTypes::Field;

namespace {

// Made once when the library is loaded; each mismatch throws a copy.
const QRError kTypeMismatch(3, 256, QRErrorCode::TypeMismatch);

[[noreturn]] void ThrowTypeMismatch() {
  throw kTypeMismatch;
}

// The held value of alternative `Tag`, or the type-mismatch error.
template <Field::ValueTag Tag, typename Storage>
auto& Held(Storage& storage) {
  if (storage.index() != Tag) ThrowTypeMismatch();
  return *std::get_if<Tag>(&storage);
}

}  // namespace

Field::Field() = default;

Field::Field(const std::string& name, const std::string& value)
    : m_Name(name), m_Value(std::in_place_index<String>, value) {}

Field::Field(const std::string& name, const char* value)
    : m_Name(name), m_Value(std::in_place_index<String>, value) {}

Field::Field(const std::string& name, const orv_utf8string& value)
    : m_Name(name), m_Value(std::in_place_index<UTF8String>, value) {}

Field::Field(const std::string& name, std::int32_t value)
    : m_Name(name), m_Value(std::in_place_index<Long>, value) {}

Field::Field(const std::string& name, bool value)
    : m_Name(name), m_Value(std::in_place_index<Bool>, value) {}

Field::Field(const Field& other) = default;

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
  out = Held<String>(m_Value);
}
void Field::Value(orv_utf8string& out) const {
  out = Held<UTF8String>(m_Value);
}
void Field::Value(std::int32_t& out) const {
  out = Held<Long>(m_Value);
}
void Field::Value(bool& out) const {
  out = Held<Bool>(m_Value);
}

void Field::Update(const std::string& value) {
  Held<String>(m_Value) = value;
}
void Field::Update(const char* value) {
  Held<String>(m_Value) = value;
}
void Field::Update(const orv_utf8string& value) {
  Held<UTF8String>(m_Value) = value;
}
void Field::Update(std::int32_t value) {
  Held<Long>(m_Value) = value;
}
void Field::Update(bool value) {
  Held<Bool>(m_Value) = value;
}

bool Field::operator==(const Field& other) const {
  // Names first, then tags; std::variant compares the index before the values.
  return m_Name == other.m_Name && m_Value == other.m_Value;
}
