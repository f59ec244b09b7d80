#include "commands/names_command.h"

#include <string>
#include <vector>

#include "app/suggestion.h"
#include "cli/command_catalog.h"
#include "commands/lookup.h"
#include "output/json_writer.h"

namespace qrconfig {

namespace {

struct ListSpec {
  const char* What;
  std::size_t Least;  // arguments after WHAT
  std::size_t Most;
};

constexpr ListSpec kLists[] = {
    {"commands", 0, 0}, {"options", 0, 0}, {"nodes", 0, 1},
    {"fields", 1, 1},   {"drivers", 0, 0}, {"databases", 1, 1},
};

void Write(const std::vector<std::string>& names, bool asJson, std::ostream& out) {
  if (!asJson) {
    for (const std::string& name : names) out << name << '\n';
    return;
  }
  JsonWriter json(out);
  json.BeginArray();
  for (const std::string& name : names) json.String(name);
  json.EndArray();
  json.Finish();
}

// The subtree of `node` in tree order, each path after `prefix`, iteratively.
void CollectPaths(const TreeNode& node, const std::string& path, std::vector<std::string>& out) {
  struct Frame {
    const TreeNode* Node;
    std::string Path;
  };
  std::vector<Frame> stack{{&node, path}};
  while (!stack.empty()) {
    Frame frame = std::move(stack.back());
    stack.pop_back();
    out.push_back(frame.Path);
    std::vector<Frame> children;
    for (auto child = frame.Node->ch_begin(); child != frame.Node->ch_end(); ++child)
      children.push_back({&*child, frame.Path + "/" + (*child).value().Name()});
    stack.insert(stack.end(), children.rbegin(), children.rend());
  }
}

}  // namespace

void CheckNamesArguments(const Invocation& invocation) {
  const std::string& what = invocation.Arguments.front();
  const std::size_t more = invocation.Arguments.size() - 1;
  std::vector<std::string> names;
  for (const ListSpec& list : kLists) {
    names.emplace_back(list.What);
    if (what != list.What) continue;
    if (more < list.Least || more > list.Most) {
      throw UsageError("names " + what + " takes " +
                       (list.Most == 0    ? std::string("no further argument")
                        : list.Least == 1 ? std::string("one further argument")
                                          : std::string("at most one further argument")) +
                       ", not " + std::to_string(more));
    }
    return;
  }
  const std::string suggestion = Suggestion(what, names);
  throw UsageError("names takes commands, options, nodes, fields, drivers or databases, not \"" +
                   what + "\"" +
                   (suggestion.empty() ? "" : " (did you mean \"" + suggestion + "\"?)"));
}

bool NamesNeedNoConfiguration(const Invocation& invocation) {
  const std::string& what = invocation.Arguments.front();
  return what == "commands" || what == "options";
}

int RunStaticNames(const Invocation& invocation, std::ostream& out) {
  std::vector<std::string> names;
  if (invocation.Arguments.front() == "commands") {
    for (const CommandSpec& command : Commands()) names.emplace_back(command.Name);
  } else {
    for (const OptionSpec& option : Options()) {
      names.push_back("--" + std::string(option.Name));
      if (option.Argument != nullptr) names.back() += " " + std::string(option.Argument);
    }
  }
  Write(names, invocation.Json, out);
  return 0;
}

int RunNames(const Invocation& invocation, ConfigManager& config, std::ostream& out) {
  if (NamesNeedNoConfiguration(invocation)) return RunStaticNames(invocation, out);
  const std::string& what = invocation.Arguments.front();
  std::vector<std::string> names;
  if (what == "nodes") {
    std::string start = invocation.Arguments.size() == 2 ? invocation.Arguments[1] : "";
    const TreeNode& node =
        FindNode(config, start.empty() ? static_cast<const char*>(config.Root()) : start);
    // The path of the node itself, with slashes, from its ancestors.
    std::string path;
    for (const TreeNode* at = &node; at != nullptr; at = at->parent())
      path = "/" + at->value().Name() + path;
    CollectPaths(node, path, names);
  } else if (what == "fields") {
    for (const auto& field : FindNode(config, invocation.Arguments[1]).value())
      names.push_back(field.Name());
  } else if (what == "drivers") {
    names = config.GetNativeDrivers();
    names.insert(names.end(), config.GetOtherDrivers().begin(), config.GetOtherDrivers().end());
  } else {
    const std::string driver = ResolveDriver(config, invocation.Arguments[1]);
    const TreeNode& drivers = config.GetTree().Find(config.DBDrivers());
    for (auto child = drivers.ch_begin(); child != drivers.ch_end(); ++child) {
      if ((*child).value().Name() != driver) continue;
      for (auto database = (*child).ch_begin(); database != (*child).ch_end(); ++database)
        names.push_back((*database).value().Name());
      break;
    }
  }
  Write(names, invocation.Json, out);
  return 0;
}

}  // namespace qrconfig
