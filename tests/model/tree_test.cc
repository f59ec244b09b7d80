#include "qr_config/config/model/tree.h"

#include <gtest/gtest.h>

#include <new>
#include <string>

#include "qr_config/config/model/model_builder.h"

namespace {

using Node = ConfigManagerTypes::Node;
using Field = ConfigManagerTypes::Field;

// A value that can be told to fail its n-th copy.
struct Probe {
  static int copiesLeft;  // negative: unlimited

  explicit Probe(std::string name) : Name(std::move(name)) {}
  Probe(const Probe& other) : Name(other.Name) {
    if (copiesLeft == 0) throw std::bad_alloc();
    if (copiesLeft > 0) --copiesLeft;
  }
  std::string Name;
};
int Probe::copiesLeft = -1;

// The names of a subtree in pre-order, with "(" and ")" around each node's children.
std::string Shape(const tree_node<Node>& node) {
  std::string out = node.value().Name();
  if (node.ch_size() == 0) return out;
  out += "(";
  for (auto child = node.ch_begin(); child != node.ch_end(); ++child) out += Shape(*child) + " ";
  out.back() = ')';
  return out;
}

// r(a(a1 a2) b)
tree<Node> Sample() {
  tree<Node> t(Node("r"));
  auto a = t.root().ch_push_back(Node("a"));
  (*a).value().push_back(Field("F", "x"));
  a->ch_push_back(Node("a1"));
  a->ch_push_back(Node("a2"));
  t.root().ch_push_back(Node("b"));
  return t;
}

TEST(TreeTest, CopiesAreDeepAndIndependent) {
  const tree<Node> empty;
  EXPECT_TRUE(tree<Node>(empty).empty());
  tree<Node> source = Sample();
  tree<Node> copy(source);
  EXPECT_EQ(Shape(copy.root()), "r(a(a1 a2) b)");
  EXPECT_EQ(copy.root().ch_begin()->parent(), &copy.root());
  EXPECT_EQ((*copy.root().ch_begin()).value().front(), Field("F", "x"));
  source.root().ch_erase(source.root().ch_begin());
  EXPECT_EQ(Shape(copy.root()), "r(a(a1 a2) b)");

  const tree<Node> sub(*copy.root().ch_begin());  // from a tree node
  EXPECT_EQ(Shape(sub.root()), "a(a1 a2)");
  EXPECT_EQ(sub.root().parent(), nullptr);
  copy = copy.root();  // its own root
  EXPECT_EQ(Shape(copy.root()), "r(a(a1 a2) b)");
  copy = *(*copy.root().ch_begin()).ch_begin();  // a node deep inside itself
  EXPECT_EQ(Shape(copy.root()), "a1");
  copy = empty;
  EXPECT_TRUE(copy.empty());
}

TEST(TreeTest, AssignCutMovesNodesWithoutCopying) {
  tree<Node> source = Sample();
  tree_node<Node>* oldRoot = &source.root();
  tree<Node> taker(Node("old"));
  taker.assign_cut(source);
  EXPECT_TRUE(source.empty());
  EXPECT_EQ(&taker.root(), oldRoot);
  taker.assign_cut(taker);
  EXPECT_EQ(&taker.root(), oldRoot);

  tree_node<Node>* a = &*taker.root().ch_begin();
  tree<Node> part;
  part.assign_cut(taker.root(), taker.root().ch_begin());
  EXPECT_EQ(&part.root(), a);
  EXPECT_EQ(a->parent(), nullptr);
  EXPECT_EQ(Shape(part.root()), "a(a1 a2)");
  EXPECT_EQ(Shape(taker.root()), "r(b)");
  part.assign_cut(part.root(), ++part.root().ch_begin());  // a child of its own root
  EXPECT_EQ(Shape(part.root()), "a2");
}

// The children's links live in the children: removing the first, a middle and the last
// child, and cutting one out, leaves the others in order both ways, with the right count.
TEST(TreeTest, ChildListStaysLinkedThroughRemovalsAtEveryPosition) {
  tree<Node> t(Node("r"));
  tree_node<Node>& r = t.root();
  for (const char* name : {"a", "b", "c", "d", "e", "f"}) r.ch_push_back(Node(name));
  const auto backwards = [&r] {
    std::string names;
    for (auto it = r.ch_end(); it != r.ch_begin();) names += (*--it).value().Name();
    return names;
  };
  r.ch_erase(r.ch_begin());                // first
  r.ch_erase(std::next(r.ch_begin(), 2));  // middle: d
  r.ch_erase(std::prev(r.ch_end()));       // last
  EXPECT_EQ(Shape(r), "r(b c e)");
  EXPECT_EQ(backwards(), "ecb");
  tree<Node> cut;
  cut.assign_cut(r, std::prev(r.ch_end()));
  EXPECT_EQ(Shape(cut.root()), "e");
  EXPECT_EQ(cut.root().ch_size(), 0u);
  ModelBuilder::AppendChild(r, std::string("g"));  // made in place, appended like ch_push_back
  EXPECT_EQ(Shape(r), "r(b c g)");
  EXPECT_EQ(backwards(), "gcb");
  EXPECT_EQ(r.ch_size(), 3u);
  EXPECT_EQ(std::prev(r.ch_end())->parent(), &r);
  while (r.ch_size() > 0) r.ch_erase(r.ch_begin());
  EXPECT_EQ(r.ch_begin(), r.ch_end());
  r.ch_push_back(Node("h"));
  EXPECT_EQ(Shape(r), "r(h)");
}

TEST(TreeTest, FailedCopyLeavesNoLeakAndAnEmptyTarget) {
  tree<Probe> source(Probe("r"));
  for (int i = 0; i < 5; ++i) source.root().ch_push_back(Probe("c"))->ch_push_back(Probe("d"));
  tree<Probe> target(Probe("t"));
  Probe::copiesLeft = 4;
  EXPECT_THROW(target = source, std::bad_alloc);
  EXPECT_TRUE(target.empty());
  Probe::copiesLeft = 3;
  tree<Probe> kept(Probe("k"));
  EXPECT_THROW(kept = source.root(), std::bad_alloc);  // copies first: unchanged
  EXPECT_EQ(kept.root().value().Name, "k");
  Probe::copiesLeft = -1;
}

TEST(TreeTest, VeryDeepTreesNeedNoRecursion) {
  tree<Node> deep(Node("0"));
  tree_node<Node>* last = &deep.root();
  for (int i = 1; i < 100000; ++i) last = &*last->ch_push_back(Node("n"));
  tree<Node> copy(deep);
  deep.clear();
  int depth = 0;
  for (const tree_node<Node>* n = &copy.root(); n->ch_size() > 0; n = &*n->ch_begin()) ++depth;
  EXPECT_EQ(depth, 99999);
  copy.root().ch_erase(copy.root().ch_begin());
  EXPECT_EQ(copy.root().ch_size(), 0u);
}

}  // namespace
