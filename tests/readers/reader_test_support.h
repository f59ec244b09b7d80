// Helpers of the reader tests: documents in temporary files and fixtures, compact
// descriptions of nodes; ExpectQRError comes from the model tests, TestPlatform from the
// installation builder.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "Poco/Path.h"
#include "qr_config/config/model/tree.h"
#include "qr_config/platform/qr_error.h"
#include "support/temp_installation.h"
#include "tests/model/model_test_support.h"

using Field = ConfigManagerTypes::Field;
using Node = ConfigManagerTypes::Node;
using TreeNode = tree_node<Node>;

// A document in a temporary directory, removed with the object.
class XmlFile {
 public:
  explicit XmlFile(const std::string& content) : m_Path(m_Dir.Write("doc.xml", content)) {}
  Poco::Path Path() const { return Poco::Path(m_Path); }

 private:
  TempInstallation m_Dir;
  std::string m_Path;
};

// A document of tests/data/readers.
inline Poco::Path Fixture(const std::string& name) {
  return Poco::Path(std::string(QR_TEST_DATA_DIR) + "/readers/" + name);
}

// A field as "name=true", "name=42" (Long) or "name='text'" (String).
inline std::string Describe(const Field& field) {
  return field.Name() + "=" + ValueText(field);
}

// A subtree as "name{field, field}[child child]"; the brackets only when it has children.
inline std::string Describe(const TreeNode& node) {
  std::string out = node.value().Name() + "{";
  for (const Field& field : node.value()) out += (out.back() == '{' ? "" : ", ") + Describe(field);
  out += "}";
  for (auto it = node.ch_begin(); it != node.ch_end(); ++it) {
    out += (it == node.ch_begin() ? "[" : " ") + Describe(*it);
  }
  return node.ch_size() == 0 ? out : out + "]";
}
