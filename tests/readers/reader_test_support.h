// Helpers of the reader tests: documents in temporary files and fixtures, a fixed test platform,
// compact descriptions of nodes; ExpectQRError comes from the model tests.
#pragma once

#include <gtest/gtest.h>

#include <fstream>
#include <string>

#include "Poco/TemporaryFile.h"
#include "qr_config/config/model/tree.h"
#include "qr_config/platform/process.h"
#include "qr_config/platform/qr_error.h"
#include "tests/model/model_test_support.h"

using Field = ConfigManagerTypes::Field;
using Node = ConfigManagerTypes::Node;
using TreeNode = tree_node<Node>;

// A document written to a temporary file, removed with the object.
class XmlFile {
 public:
  explicit XmlFile(const std::string& content) { std::ofstream(m_File.path()) << content; }
  Poco::Path Path() const { return Poco::Path(m_File.path()); }

 private:
  Poco::TemporaryFile m_File;
};

// A document of tests/data/readers.
inline Poco::Path Fixture(const std::string& name) {
  return Poco::Path(std::string(QR_TEST_DATA_DIR) + "/readers/" + name);
}

// The running platform "TestOS", which answers to "TestOS", "TestFamily" and "p2";
// OSList("TestFamily") is {"TestOS", "OtherOS"}. Restores the build defaults on destruction.
struct TestPlatform {
  TestPlatform() {
    Process::Configure({"TestOS",
                        "UTF-8",
                        {"TestOS", "TestFamily", "p2"},
                        {{"TestFamily", {"TestOS", "OtherOS"}}}});
  }
  ~TestPlatform() { Process::Reset(); }
};

// A field as "name=true", "name=42" (Long) or "name='text'" (String).
inline std::string Describe(const Field& field) {
  bool flag = false;
  std::int32_t number = 0;
  std::string text;
  if (field.ValueType() == Field::Bool)
    return field.Value(flag), field.Name() + "=" + (flag ? "true" : "false");
  if (field.ValueType() == Field::Long)
    return field.Value(number), field.Name() + "=" + std::to_string(number);
  return field.Value(text), field.Name() + "='" + text + "'";
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
