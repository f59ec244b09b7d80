#include "commands/tree_commands.h"

#include "commands/lookup.h"
#include "output/field_text.h"
#include "output/json_writer.h"
#include "output/tree_printer.h"

namespace qrconfig {

int RunTree(const Invocation& invocation, ConfigManager& config, std::ostream& out) {
  const std::string text = invocation.Arguments.empty()
                               ? std::string(static_cast<const char*>(config.Root()))
                               : invocation.Arguments.front();
  const TreeNode& node = FindNode(config, text);
  if (invocation.Json) {
    JsonWriter json(out);
    TreePrinter::WriteJson(node, text, json);
    json.Finish();
  } else {
    TreePrinter::WriteText(node, text, out);
  }
  return 0;
}

int RunGet(const Invocation& invocation, ConfigManager& config, std::ostream& out) {
  const std::string& path = invocation.Arguments.front();
  const ConfigManager::Node& node = FindNode(config, path).value();
  if (invocation.Arguments.size() == 2) {
    const ConfigManager::Field& field = FindField(node, invocation.Arguments[1]);
    if (invocation.Json) {
      JsonWriter json(out);
      WriteFieldJson(json, field);
      json.Finish();
    } else {
      out << PlainValue(field) << '\n';
    }
    return 0;
  }
  if (invocation.Json) {
    JsonWriter json(out);
    json.BeginObject();
    json.Member("path", path);
    json.Key("fields");
    json.BeginArray();
    for (const auto& field : node) WriteFieldJson(json, field);
    json.EndArray();
    json.EndObject();
    json.Finish();
  } else {
    for (const auto& field : node) out << FieldLine(field) << '\n';
  }
  return 0;
}

}  // namespace qrconfig
