#include "output/tree_printer.h"

#include <vector>

#include "output/field_text.h"

namespace qrconfig {

namespace {

using TreeNode = TreePrinter::TreeNode;
using FieldIterator = tnode<ConfigManagerTypes::Field>::const_iterator;
using ChildIterator = TreeNode::const_ch_iterator;

}  // namespace

void TreePrinter::WriteText(const TreeNode& node, const std::string& label, std::ostream& out) {
  struct Frame {
    const TreeNode* Node;
    std::string Prefix;  // what stands before the branch of each item of this node
    FieldIterator Field;
    ChildIterator Child;
  };
  out << label << '\n';
  std::vector<Frame> stack;
  stack.push_back({&node, "", node.value().begin(), node.ch_begin()});
  while (!stack.empty()) {
    Frame& top = stack.back();
    const auto& fields = top.Node->value();
    if (top.Field != fields.end()) {
      const auto& field = *top.Field++;
      const bool last = top.Field == fields.end() && top.Node->ch_size() == 0;
      out << top.Prefix << (last ? "└── " : "├── ") << FieldLine(field) << '\n';
      continue;
    }
    if (top.Child == top.Node->ch_end()) {
      stack.pop_back();
      continue;
    }
    const TreeNode& child = *top.Child++;
    const bool last = top.Child == top.Node->ch_end();
    const std::size_t level = stack.size();
    out << top.Prefix << (last ? "└── " : "├── ");
    if (level >= kMaxDrawnLevels) out << "[level " << level << "] ";
    out << child.value().Name() << '\n';
    std::string prefix =
        level >= kMaxDrawnLevels ? top.Prefix : top.Prefix + (last ? "    " : "│   ");
    stack.push_back({&child, std::move(prefix), child.value().begin(), child.ch_begin()});
  }
}

void TreePrinter::WriteJson(const TreeNode& node, const std::string& path, JsonWriter& json) {
  struct Frame {
    const TreeNode* Node;
    ChildIterator Child;
  };
  auto open = [&json](const TreeNode& opened) {
    json.Member("name", opened.value().Name());
    json.Key("fields");
    json.BeginArray();
    for (const auto& field : opened.value()) WriteFieldJson(json, field);
    json.EndArray();
    json.Key("children");
    json.BeginArray();
  };

  json.BeginObject();
  json.Member("path", path);
  open(node);
  std::vector<Frame> stack{{&node, node.ch_begin()}};
  while (!stack.empty()) {
    Frame& top = stack.back();
    if (top.Child == top.Node->ch_end()) {
      json.EndArray();
      json.EndObject();
      stack.pop_back();
      continue;
    }
    const TreeNode& child = *top.Child++;
    json.BeginObject();
    open(child);
    stack.push_back({&child, child.ch_begin()});
  }
}

}  // namespace qrconfig
