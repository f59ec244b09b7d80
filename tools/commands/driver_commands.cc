#include "commands/driver_commands.h"

#include <algorithm>
#include <map>
#include <string>
#include <vector>

#include "commands/lookup.h"
#include "output/field_text.h"
#include "output/json_writer.h"
#include "output/text_table.h"
#include "qr_config/platform/qr_error.h"

namespace qrconfig {

namespace {

// The other keys of `names` that map to `name`, in key order.
std::vector<std::string> AliasesOf(const std::map<std::string, std::string>& names,
                                   const std::string& name) {
  std::vector<std::string> aliases;
  for (const auto& [key, value] : names) {
    if (value == name && key != name) aliases.push_back(key);
  }
  return aliases;
}

std::string Join(const std::vector<std::string>& texts) {
  std::string joined;
  for (const std::string& text : texts) joined += (joined.empty() ? "" : ", ") + text;
  return joined;
}

void WriteStrings(JsonWriter& json, const std::string& key, const std::vector<std::string>& texts) {
  json.Key(key);
  json.BeginArray();
  for (const std::string& text : texts) json.String(text);
  json.EndArray();
}

// The first child of DBDrivers named `driver`, or nullptr when the driver loaded nothing.
const TreeNode* DriverNode(ConfigManager& config, const std::string& driver) {
  const TreeNode& drivers = config.GetTree().Find(config.DBDrivers());
  for (auto child = drivers.ch_begin(); child != drivers.ch_end(); ++child) {
    if ((*child).value().Name() == driver) return &*child;
  }
  return nullptr;
}

bool IsNative(ConfigManager& config, const std::string& driver) {
  const auto& native = config.GetNativeDrivers();
  return std::find(native.begin(), native.end(), driver) != native.end();
}

struct DatabaseView {
  std::string Name;
  std::vector<std::string> Aliases;
  const ConfigManager::Field* Library = nullptr;
  std::vector<std::string> Libraries;
  std::string Directory;
};

DatabaseView ViewOf(const TreeNode& database, const std::map<std::string, std::string>& names) {
  const ConfigManager::Node& node = database.value();
  DatabaseView view;
  view.Name = node.Name();
  view.Aliases = AliasesOf(names, view.Name);
  if (node.Exists("Library")) view.Library = &node.Find("Library");
  for (auto child = database.ch_begin(); child != database.ch_end(); ++child) {
    if ((*child).value().Name() != "Libraries") continue;
    for (const auto& field : (*child).value()) {
      if (field.Name() == "Library") view.Libraries.push_back(PlainValue(field));
    }
  }
  if (node.Exists("Directory")) view.Directory = PlainValue(node.Find("Directory"));
  return view;
}

}  // namespace

int RunDrivers(const Invocation& invocation, ConfigManager& config, std::ostream& out) {
  const auto& names = config.GetDriverNames();
  std::vector<std::pair<std::string, bool>> drivers;
  for (const std::string& name : config.GetNativeDrivers()) drivers.emplace_back(name, true);
  for (const std::string& name : config.GetOtherDrivers()) drivers.emplace_back(name, false);

  if (invocation.Json) {
    JsonWriter json(out);
    json.BeginObject();
    json.Key("drivers");
    json.BeginArray();
    for (const auto& [name, native] : drivers) {
      const TreeNode* node = DriverNode(config, name);
      json.BeginObject();
      json.Member("name", name);
      json.Member("native", native);
      json.Member("loaded", node != nullptr);
      json.Member("databases", static_cast<std::int64_t>(node ? node->ch_size() : 0));
      WriteStrings(json, "aliases", AliasesOf(names, name));
      json.EndObject();
    }
    json.EndArray();
    json.EndObject();
    json.Finish();
    return 0;
  }
  TextTable table;
  table.AddRow({"DRIVER", "NATIVE", "DATABASES", "ALIASES"});
  for (const auto& [name, native] : drivers) {
    const TreeNode* node = DriverNode(config, name);
    table.AddRow({name, native ? "yes" : "no", node ? std::to_string(node->ch_size()) : "-",
                  Join(AliasesOf(names, name))});
  }
  table.Write(out);
  return 0;
}

int RunDatabases(const Invocation& invocation, ConfigManager& config, std::ostream& out) {
  const std::string driver = ResolveDriver(config, invocation.Arguments.front());
  const bool native = IsNative(config, driver);
  std::vector<DatabaseView> databases;
  if (const TreeNode* node = DriverNode(config, driver)) {
    std::map<std::string, std::string> names;
    try {
      names = config.GetDatabaseNames(driver);
    } catch (const QRError&) {
      // Databases made by the main file have no name table: they have no aliases.
    }
    for (auto child = node->ch_begin(); child != node->ch_end(); ++child)
      databases.push_back(ViewOf(*child, names));
  }

  if (invocation.Json) {
    JsonWriter json(out);
    json.BeginObject();
    json.Member("driver", driver);
    json.Member("native", native);
    json.Key("databases");
    json.BeginArray();
    for (const DatabaseView& database : databases) {
      json.BeginObject();
      json.Member("name", database.Name);
      WriteStrings(json, "aliases", database.Aliases);
      json.Key("library");
      if (database.Library != nullptr) {
        json.String(PlainValue(*database.Library));
      } else {
        json.Null();
      }
      WriteStrings(json, "libraries", database.Libraries);
      json.Member("directory", database.Directory);
      json.EndObject();
    }
    json.EndArray();
    json.EndObject();
    json.Finish();
    return 0;
  }
  if (!native) {
    out << "Driver " << driver
        << " is not native (not implemented in C): the library loads no databases for it.\n";
    return 0;
  }
  out << "Driver " << driver << ", " << databases.size()
      << (databases.size() == 1 ? " database" : " databases") << (databases.empty() ? "." : ":")
      << '\n';
  for (const DatabaseView& database : databases) {
    out << database.Name << '\n';
    std::vector<std::pair<std::string, std::string>> pairs;
    pairs.emplace_back("aliases", Join(database.Aliases));
    if (database.Library != nullptr) pairs.emplace_back("library", PlainValue(*database.Library));
    if (!database.Libraries.empty()) pairs.emplace_back("libraries", Join(database.Libraries));
    pairs.emplace_back("directory", database.Directory);
    TextTable::WritePairs(pairs, out, 2);
  }
  return 0;
}

int RunResolve(const Invocation& invocation, ConfigManager& config, std::ostream& out) {
  const std::string driver = ResolveDriver(config, invocation.Arguments.front());
  std::string database;
  if (invocation.Arguments.size() == 2)
    database = ResolveDatabase(config, driver, invocation.Arguments[1]);
  if (invocation.Json) {
    JsonWriter json(out);
    json.BeginObject();
    json.Member("driver", driver);
    if (invocation.Arguments.size() == 2) json.Member("database", database);
    json.EndObject();
    json.Finish();
  } else {
    out << (invocation.Arguments.size() == 2 ? database : driver) << '\n';
  }
  return 0;
}

}  // namespace qrconfig
