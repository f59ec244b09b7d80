#include "check/xml_document.h"

namespace qrconfig {

const std::string* XmlElement::Attribute(const std::string& name) const {
  for (const auto& attribute : Attributes) {
    if (attribute.first == name) return &attribute.second;
  }
  return nullptr;
}

const XmlElement* XmlDocument::ParentOf(const XmlElement& element) const {
  return element.Parent == XmlElement::kNoParent ? nullptr : &Elements[element.Parent];
}

bool XmlDocument::ParentIs(const XmlElement& element, const std::string& name) const {
  const XmlElement* parent = ParentOf(element);
  return parent != nullptr && parent->Name == name;
}

const XmlElement* XmlDocument::Find(const std::string& name, const std::string& attribute,
                                    const std::string& value) const {
  for (const XmlElement& element : Elements) {
    if (element.Name != name) continue;
    if (attribute.empty()) return &element;
    const std::string* found = element.Attribute(attribute);
    if (found != nullptr && *found == value) return &element;
  }
  return nullptr;
}

unsigned long XmlDocument::LineOf(const std::string& name, const std::string& attribute,
                                  const std::string& value) const {
  const XmlElement* element = Find(name, attribute, value);
  return element != nullptr ? element->Line : 0;
}

}  // namespace qrconfig
