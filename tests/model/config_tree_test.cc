#include "qr_config/config/model/config_tree.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/model/model_test_support.h"

namespace {

using NodePath = ConfigManagerTypes::NodePath;
using Node = ConfigManagerTypes::Node;
using Tree = ConfigManagerTypes::Tree;

// Reaches the manager's constructor.
struct TestTree : Tree {
  explicit TestTree(const std::string& root) : Tree(root) {}
};

// \Quorin with DBDrivers(D), a second DBDrivers, Leaf, and a nested node named Quorin.
Tree Sample() {
  Tree t = TestTree("Quorin");
  auto drivers = t.root().ch_push_back(Node("DBDrivers"));
  drivers->ch_push_back(Node("D"))->ch_push_back(Node("Quorin"));
  t.root().ch_push_back(Node("DBDrivers"));
  t.root().ch_push_back(Node("Leaf"));
  return t;
}

TEST(ConfigTreeTest, FindWalksFirstMatchingChildren) {
  Tree t = Sample();
  EXPECT_EQ(&t.Find(NodePath("\\Quorin")), &t.root());
  EXPECT_EQ(&t[NodePath("\\Quorin\\DBDrivers")], &*t.root().ch_begin());
  const Tree& constant = t;
  EXPECT_EQ(&constant.Find(NodePath("Quorin\\DBDrivers\\D\\Quorin")).value(),
            &(*(*t.root().ch_begin()).ch_begin()).ch_begin()->value());
  EXPECT_TRUE(t.Exists(NodePath("\\Quorin\\Leaf")));
}

TEST(ConfigTreeTest, FailedLookupsThrowWithThePath) {
  Tree t = Sample();
  Tree emptied = t;
  emptied.clear();
  const struct {
    const Tree* tree;
    const char* path;
    int code;
  } cases[] = {
      {&t, "", QRErrorCode::EmptyNodePath},
      {&t, "\\quorin", QRErrorCode::NodeNotFound},
      {&t, "\\Quorin\\dbdrivers", QRErrorCode::NodeNotFound},
      {&t, "\\D", QRErrorCode::NodeNotFound},  // exists only lower down
      {&t, "\\Quorin\\Leaf\\X", QRErrorCode::NodeNotFound},
      {&t, "\\Quorin\\DBDrivers\\", QRErrorCode::NodeNotFound},  // empty level
      {&emptied, "\\Quorin", QRErrorCode::NodeNotFound},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.path);
    const NodePath path(c.path);
    const std::string argument = c.code == QRErrorCode::EmptyNodePath ? "" : c.path;
    ExpectQRError([&] { c.tree->Find(path); }, c.code, argument);
    EXPECT_FALSE(c.tree->Exists(path));
  }
  // A name with NUL bytes, appended either way: the argument is the text up to the first NUL.
  NodePath appended("\\Quorin");
  appended += std::string("A\\B\0\0", 5);
  EXPECT_EQ(appended.text(), NodePath("\\Quorin", std::string("A\\B\0\0", 5)).text());
  ExpectQRError([&] { t.Find(appended); }, QRErrorCode::NodeNotFound, "\\Quorin\\A\\B");
}

// Moving a tree or a path copies it: the source keeps its nodes and its text.
TEST(ConfigTreeTest, MovingTreesAndPathsCopies) {
  Tree source = Sample();
  Tree moved(std::move(source));
  EXPECT_TRUE(source.Exists(NodePath("\\Quorin\\DBDrivers\\D")));
  EXPECT_NE(&moved.root(), &source.root());
  Tree assigned = TestTree("Other");
  assigned = std::move(moved);
  NodePath path("\\Quorin\\Leaf");
  EXPECT_TRUE(moved.Exists(path) && assigned.Exists(path));
  NodePath movedPath(std::move(path));
  path = std::move(movedPath);
  EXPECT_TRUE(assigned.Exists(path) && assigned.Exists(movedPath));
}

}  // namespace
