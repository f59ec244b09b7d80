#include "commands/origin_commands.h"

#include <map>

#include "check/findings_report.h"
#include "commands/lookup.h"
#include "commands/node_path_argument.h"
#include "output/field_text.h"
#include "output/json_writer.h"
#include "qr_config/platform/qr_error.h"

namespace qrconfig {

namespace {

// "qr.cfg:49", or "(start-up fall-back)" for a value from no file.
std::string Place(const OriginStep& step) {
  if (step.File.empty()) return "(" + step.Source + ")";
  return step.File + (step.Line != 0 ? ":" + std::to_string(step.Line) : std::string());
}

// The four columns of list, each on one line.
std::string ListLine(const EffectiveField& field, const std::string& value) {
  return FindingsReport::Escaped(field.Path) + '\t' + FindingsReport::Escaped(field.Field->Name()) +
         '\t' + TypeName(field.Field->ValueType()) + '\t' + FindingsReport::Escaped(value);
}

void WriteOrigins(JsonWriter& json, const std::vector<OriginStep>& origins) {
  json.BeginArray();
  for (const OriginStep& step : origins) {
    json.BeginObject();
    json.Key("file");
    step.File.empty() ? json.Null() : json.String(step.File);
    json.Key("line");
    step.Line == 0 ? json.Null() : json.Integer(static_cast<std::int64_t>(step.Line));
    json.Member("source", step.Source);
    json.Member("value", step.Text);
    json.EndObject();
  }
  json.EndArray();
}

}  // namespace

void EffectiveFields::OnValue(const LoadedValue& value) {
  if (!m_Only.empty() && value.NodePath != m_Only) return;
  EffectiveField field;
  field.Path = std::string(value.NodePath);
  field.Node = value.Node;
  field.Field = value.Field;
  for (const ValueOrigin* origin = value.Origin; origin != nullptr; origin = origin->Replaced) {
    field.Origins.push_back(OriginStep{std::string(origin->Where.File), origin->Where.Line,
                                       std::string(origin->Source), std::string(origin->Text)});
  }
  m_Fields.push_back(std::move(field));
}

std::string ReportedPath(const std::string& text) {
  const ConfigManager::NodePath path = NodePathArgument(text);
  std::string reported;
  for (int level = 0; level < path.levels(); ++level) reported += "\\" + path[level];
  return reported;
}

int RunList(const Invocation& invocation, const EffectiveFields& fields, std::ostream& out) {
  if (invocation.Json) {
    JsonWriter json(out);
    json.BeginArray();
    for (const EffectiveField& field : fields.Fields()) {
      json.BeginObject();
      json.Member("path", field.Path);
      json.Member("field", field.Field->Name());
      json.Member("type", TypeName(field.Field->ValueType()));
      json.Key("value");
      WriteFieldValueJson(json, *field.Field);
      json.Key("origin");
      WriteOrigins(json, field.Origins);
      json.EndObject();
    }
    json.EndArray();
    json.Finish();
    return 0;
  }
  for (const EffectiveField& field : fields.Fields()) {
    out << ListLine(field, PlainValue(*field.Field));
    if (invocation.ShowOrigin)
      out << '\t'
          << (field.Origins.empty() ? "-" : FindingsReport::Escaped(Place(field.Origins[0])));
    out << '\n';
  }
  return 0;
}

int RunExplain(const Invocation& invocation, ConfigManager& config, const EffectiveFields& fields,
               std::ostream& out) {
  const std::string& text = invocation.Arguments.front();
  const ConfigManager::Node& node = FindNode(config, text).value();
  const std::string* only = invocation.Arguments.size() == 2 ? &invocation.Arguments[1] : nullptr;
  if (only != nullptr) FindField(node, *only);  // QRError 261 with the nearest name

  std::vector<const EffectiveField*> shown;
  for (const EffectiveField& field : fields.Fields()) {
    if (field.Node == &node && (only == nullptr || field.Field->Name() == *only))
      shown.push_back(&field);
  }
  if (invocation.Json) {
    JsonWriter json(out);
    json.BeginObject();
    json.Member("path", text);
    json.Key("fields");
    json.BeginArray();
    for (const EffectiveField* field : shown) {
      json.BeginObject();
      json.Member("name", field->Field->Name());
      json.Member("type", TypeName(field->Field->ValueType()));
      json.Key("value");
      WriteFieldValueJson(json, *field->Field);
      json.Key("origin");
      WriteOrigins(json, field->Origins);
      json.EndObject();
    }
    json.EndArray();
    json.EndObject();
    json.Finish();
    return 0;
  }
  out << FindingsReport::Escaped(text) << '\n';
  for (const EffectiveField* field : shown) {
    out << "  " << FindingsReport::Escaped(field->Field->Name()) << " = "
        << FindingsReport::Escaped(DisplayValue(*field->Field));
    if (field->Origins.empty()) {
      out << "   (origin unknown)";
    } else {
      out << "   " << FindingsReport::Escaped(Place(field->Origins[0]));
      if (!field->Origins[0].File.empty()) out << " (" << field->Origins[0].Source << ")";
      for (std::size_t i = 1; i < field->Origins.size(); ++i) {
        const OriginStep& step = field->Origins[i];
        out << ", replaces " << FindingsReport::Escaped(step.Text) << " from "
            << FindingsReport::Escaped(Place(step));
        if (!step.File.empty()) out << " (" << step.Source << ")";
      }
    }
    out << '\n';
  }
  return 0;
}

std::vector<ComparableLine> ComparableLines(const std::vector<EffectiveField>& fields,
                                            const std::string& directory) {
  std::vector<ComparableLine> lines;
  std::map<std::pair<const ConfigManager::Node*, std::string>, int> ranks;
  lines.reserve(fields.size());
  for (const EffectiveField& field : fields) {
    std::string value = PlainValue(*field.Field);
    const bool text = field.Field->ValueType() == ConfigManager::Field::String ||
                      field.Field->ValueType() == ConfigManager::Field::UTF8String;
    if (text && !directory.empty() && value.compare(0, directory.size(), directory) == 0)
      value.replace(0, directory.size(), "$DIR");
    const int rank = ranks[{field.Node, field.Field->Name()}]++;
    lines.push_back(
        ComparableLine{field.Path + '\t' + field.Field->Name() + '\t' + std::to_string(rank),
                       ListLine(field, value)});
  }
  return lines;
}

int WriteDiff(const Invocation& invocation, const std::vector<ComparableLine>& left,
              const std::vector<ComparableLine>& right, std::ostream& out) {
  std::map<std::string, const ComparableLine*> rightByKey;
  for (const ComparableLine& line : right) rightByKey.emplace(line.Key, &line);
  std::map<std::string, bool> leftKeys;
  std::vector<std::pair<char, const std::string*>> differences;
  for (const ComparableLine& line : left) {
    leftKeys.emplace(line.Key, true);
    const auto other = rightByKey.find(line.Key);
    if (other != rightByKey.end() && other->second->Line == line.Line) continue;
    differences.emplace_back('-', &line.Line);
    if (other != rightByKey.end()) differences.emplace_back('+', &other->second->Line);
  }
  for (const ComparableLine& line : right) {
    if (leftKeys.count(line.Key) == 0) differences.emplace_back('+', &line.Line);
  }
  if (invocation.Json) {
    JsonWriter json(out);
    json.BeginObject();
    json.Member("equal", differences.empty());
    json.Key("differences");
    json.BeginArray();
    for (const auto& [side, line] : differences) {
      json.BeginObject();
      json.Member("side", std::string(1, side));
      json.Member("line", *line);
      json.EndObject();
    }
    json.EndArray();
    json.EndObject();
    json.Finish();
  } else if (!differences.empty()) {
    out << "--- " << FindingsReport::Escaped(invocation.Arguments[0]) << '\n'
        << "+++ " << FindingsReport::Escaped(invocation.Arguments[1]) << '\n';
    for (const auto& [side, line] : differences) out << side << *line << '\n';
  }
  return differences.empty() ? 0 : 1;
}

}  // namespace qrconfig
