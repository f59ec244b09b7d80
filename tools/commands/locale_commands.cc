#include "commands/locale_commands.h"

#include <string>
#include <utility>
#include <vector>

#include <Poco/Path.h>

#include "commands/lookup.h"
#include "output/field_text.h"
#include "output/json_writer.h"
#include "output/text_table.h"
#include "qr_config/platform/orv_locale.h"
#include "qr_config/platform/process.h"
#include "qr_config/platform/registry.h"

namespace qrconfig {

namespace {

using Pairs = std::vector<std::pair<std::string, std::string>>;

void WritePairs(const Pairs& pairs, bool asJson, std::ostream& out) {
  if (!asJson) {
    TextTable::WritePairs(pairs, out);
    return;
  }
  JsonWriter json(out);
  json.BeginObject();
  for (const auto& [key, value] : pairs) json.Member(key, value);
  json.EndObject();
  json.Finish();
}

std::string Argument(const Invocation& invocation, std::size_t index) {
  return index < invocation.Arguments.size() ? invocation.Arguments[index] : "";
}

}  // namespace

int RunLocale(const Invocation& invocation, ConfigManager& config, std::ostream& out) {
  const Quorin::LocaleDescriptor& locale =
      config.GetLocale(Argument(invocation, 0), Argument(invocation, 1));
  WritePairs({{"identifier", locale.LocaleId()},
              {"language", locale.Language()},
              {"country", locale.Country()},
              {"charset", locale.CharSet()},
              {"platform", Process::Instance().Name()}},
             invocation.Json, out);
  return 0;
}

int RunTexts(const Invocation& invocation, ConfigManager& config, std::ostream& out) {
  const std::string driver = ResolveDriver(config, Argument(invocation, 0));
  const Quorin::LocaleDescriptor& locale =
      config.GetLocale(Argument(invocation, 1), Argument(invocation, 2));

  // The file GetLocalizedDriver reads for this locale, by the same fall-backs.
  std::string directory;
  config.GetTree().Find(config.Root()).value().Find(Registry::kConfigDirectory).Value(directory);
  std::string file = Poco::Path(Poco::Path(directory).makeDirectory(), "driver").toString();
  config.LocalizeFileName(locale, "cfg", file);

  const ConfigManager::Node& node = config.GetLocalizedDriver(driver, locale).value();
  WritePairs({{"driver", driver},
              {"locale", locale.LocaleId()},
              {"file", file},
              {"External Name", PlainValue(node.Find("External Name"))},
              {"Comment", PlainValue(node.Find("Comment"))}},
             invocation.Json, out);
  return 0;
}

int RunCharset(const Invocation& invocation, ConfigManager& config, std::ostream& out) {
  if (invocation.Arguments.size() == 1) {
    const std::string& name = invocation.Arguments.front();
    const std::string& value = config.GetPlatformCharSet(name);
    if (!invocation.Json) {
      out << value << '\n';
      return 0;
    }
    WritePairs({{"platform", Process::Instance().Name()}, {"name", name}, {"value", value}}, true,
               out);
    return 0;
  }
  const std::string driver = ResolveDriver(config, invocation.Arguments[0]);
  const std::string database = ResolveDatabase(config, driver, invocation.Arguments[1]);
  const std::string& name = invocation.Arguments[2];
  const std::string& value = config.GetCharSetTableEntry(driver, database, name);
  if (!invocation.Json) {
    out << value << '\n';
    return 0;
  }
  WritePairs({{"driver", driver}, {"database", database}, {"name", name}, {"value", value}}, true,
             out);
  return 0;
}

}  // namespace qrconfig
