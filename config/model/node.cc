#include "qr_config/config/model/node.h"

#include "qr_config/platform/qr_error.h"

using Field = ConfigManagerTypes::Field;
using Node = ConfigManagerTypes::Node;

Node::Node() = default;

Node::Node(const std::string& name) : m_Name(name) {}

Node::Node(const std::string& name, const std::map<std::string, SFile::Parameter>& parameters)
    : m_Name(name) {
  for (const auto& entry : parameters) {
    const SFile::Parameter& parameter = entry.second;
    switch (parameter.Kind()) {
      case 1: {
        std::string text;
        parameter.Value(text);
        push_back(Field(parameter.Name(), text));
        break;
      }
      case 2: {
        int number = 0;
        parameter.Value(number);
        push_back(Field(parameter.Name(), static_cast<std::int32_t>(number)));
        break;
      }
      case 3: {
        bool flag = false;
        parameter.Value(flag);
        push_back(Field(parameter.Name(), flag));
        break;
      }
      default:
        ThrowQRError(QRErrorCode::MissingField);
    }
  }
}

Node::Node(const Node& other) = default;

// Deliberately copies the fields: only the name moves.
Node::Node(Node&& other) : tnode<Field>(other), m_Name(std::move(other.m_Name)) {
  other.m_Name.clear();
}

Node& Node::operator=(const Node& other) {
  if (this != &other) {
    std::string name(other.m_Name);
    tnode<Field>::operator=(other);  // may throw and then changes nothing; the swap cannot
    m_Name.swap(name);
  }
  return *this;
}

Node& Node::operator=(Node&& other) {
  if (this != &other) {
    tnode<Field>::operator=(other);
    m_Name = std::move(other.m_Name);
    other.m_Name.clear();
  }
  return *this;
}

Node::~Node() = default;

const Field* Node::FindFirst(const std::string& name) const noexcept {
  for (const Field& field : *this) {
    if (field.Name() == name) return &field;
  }
  return nullptr;
}

Field& Node::Find(const std::string& name) {
  return const_cast<Field&>(static_cast<const Node&>(*this).Find(name));
}

const Field& Node::Find(const std::string& name) const {
  const Field* field = FindFirst(name);
  if (field == nullptr) ThrowQRError(QRErrorCode::MissingField, name);
  return *field;
}

bool Node::Exists(const std::string& name) const noexcept {
  return FindFirst(name) != nullptr;
}

void Node::Update(const Node& other) {
  for (const Field& source : other) {
    if (const Field* found = FindFirst(source.Name())) {
      Field& target = const_cast<Field&>(*found);
      switch (target.ValueType()) {
        case Field::Bool: {
          bool flag = false;
          source.Value(flag);
          target.Update(flag);
          break;
        }
        case Field::Long: {
          std::int32_t number = 0;
          source.Value(number);
          target.Update(number);
          break;
        }
        case Field::String: {
          std::string text;
          source.Value(text);
          target.Update(text);
          break;
        }
        default:  // None and UTF8String targets are left alone
          break;
      }
    } else {
      switch (source.ValueType()) {
        case Field::Bool:
        case Field::Long:
        case Field::String:
          push_back(source);
          break;
        default:
          ThrowQRError(QRErrorCode::MissingField);
      }
    }
  }
}
