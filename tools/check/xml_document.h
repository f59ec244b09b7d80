// XmlDocument: what `check` keeps of one XML file: its elements with their lines.
#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "qr_config/platform/orv_xml_parser.h"

namespace qrconfig {

// One element. Texts are UTF-8.
struct XmlElement {
  static constexpr std::size_t kNoParent = static_cast<std::size_t>(-1);

  std::string Name;
  std::vector<std::pair<std::string, std::string>> Attributes;  // in document order
  // The character data directly inside the element (not inside its children), chunk by
  // chunk after the line-break cut of the text-keeping readers (ReaderText::AppendCut): what
  // the main-file, setup and data-access readers take as its value.
  std::string Text;
  // The same character data as delivered, whole (line breaks and indentation kept).
  std::string RawText;
  unsigned long Line = 0;          // line of the start tag, 1-based
  std::size_t Parent = kNoParent;  // index of the parent element
  std::size_t Depth = 0;           // 0 for the root element

  // The value of the first attribute named `name`, or nullptr.
  const std::string* Attribute(const std::string& name) const;
};

// The elements of one file, flat, in the order of their start tags, each pointing at its
// parent: walks need neither recursion nor stack, whatever the nesting depth.
struct XmlDocument {
  std::string Path;
  std::vector<XmlElement> Elements;
  // Why the file could not be read to its end (XmlDiagnostic::Code 45 to 48 with line and
  // column); Code 0 when it was read whole. Elements before the error are kept.
  XmlDiagnostic Error;

  bool Complete() const { return Error.Code == 0; }
  // The parent of `element`, or nullptr for the root.
  const XmlElement* ParentOf(const XmlElement& element) const;
  // Whether the parent of `element` is named `name`.
  bool ParentIs(const XmlElement& element, const std::string& name) const;
  // The first element named `name` whose attribute `attribute` is `value` (any element named
  // `name` when `attribute` is empty), or nullptr.
  const XmlElement* Find(const std::string& name, const std::string& attribute = "",
                         const std::string& value = "") const;
  // The line of Find(...), or 0.
  unsigned long LineOf(const std::string& name, const std::string& attribute = "",
                       const std::string& value = "") const;
};

}  // namespace qrconfig
