#include "check/data_access_model.h"

#include <memory>

#include "output/field_text.h"
#include "qr_config/platform/process.h"
#include "qr_config/platform/qr_error.h"
#include "qr_config/platform/regular_expression.h"

namespace qrconfig {

namespace {

enum State { Skip, InDefaults, InDatabase, InAlias, InLibraries, InText };

using Fields = std::vector<ModelField>;

ModelField* FindFirst(Fields& fields, const std::string& name) {
  for (ModelField& field : fields) {
    if (field.Name == name) return &field;
  }
  return nullptr;
}

// The push_back rule: appended unless an equal field (name, type and value) is there.
void PushBack(Fields& fields, ModelField field) {
  for (const ModelField& existing : fields) {
    if (existing.Name == field.Name && existing.Type == field.Type && existing.Text == field.Text)
      return;
  }
  fields.push_back(std::move(field));
}

bool PlatformAttributeSupported(const XmlElement& element) {
  const std::string* list = element.Attribute("Platform");
  return list == nullptr || PlatformListSupported(*list);
}

}  // namespace

const ModelField* DatabaseDeclaration::FindField(const std::string& name) const {
  for (const ModelField& field : Fields) {
    if (field.Name == name) return &field;
  }
  return nullptr;
}

bool PlatformListSupported(const std::string& list) {
  std::string::size_type start = 0;
  for (;;) {
    const std::string::size_type comma = list.find(',', start);
    const std::string name = list.substr(start, comma == std::string::npos ? comma : comma - start);
    if (Process::Instance().PlatformSupported(name)) return true;
    if (comma == std::string::npos) return false;
    start = comma + 1;
  }
}

DataAccessModel::DataAccessModel(const XmlDocument& document,
                                 const ConfigManagerTypes::Node& driversDefaults,
                                 const std::string& configurationFile, const std::string& directory,
                                 const std::map<std::string, std::string>& versions,
                                 const std::vector<std::string>* patterns) {
  Walk(document, driversDefaults, configurationFile, directory, versions, patterns);
}

void DataAccessModel::Walk(const XmlDocument& document,
                           const ConfigManagerTypes::Node& driversDefaults,
                           const std::string& configurationFile, const std::string& directory,
                           const std::map<std::string, std::string>& versions,
                           const std::vector<std::string>* patterns) {
  // The patterns, compiled as the loader does; one that does not compile makes the loader
  // fail the whole file.
  std::vector<std::unique_ptr<RegularExpression::Matcher>> matchers;
  std::string badPattern;
  bool restricted = patterns != nullptr && !patterns->empty();
  if (restricted) {
    for (const std::string& pattern : *patterns) {
      try {
        matchers.push_back(std::make_unique<RegularExpression::Matcher>(pattern, 0));
      } catch (const QRError&) {
        badPattern = pattern;
        break;
      }
    }
  }

  Fields defaults;
  std::vector<State> states{Skip};
  // The node that "Parameter", "Library" and "Libraries" act on: -1 for the defaults,
  // otherwise the index of the database in m_Databases.
  long current = -1;
  auto currentFields = [&]() -> Fields& {
    return current < 0 ? defaults : m_Databases[static_cast<std::size_t>(current)].Fields;
  };
  auto set = [&](const std::string& name, ValueTag type, const std::string& text,
                 unsigned long line) {
    Fields& fields = currentFields();
    if (ModelField* existing = FindFirst(fields, name)) {
      if (existing->Type != type) {
        const std::string section =
            current < 0 ? "Defaults" : m_Databases[static_cast<std::size_t>(current)].Name;
        m_Conflicts.push_back({name, section, text, line, existing->Type, type});
      } else {
        existing->Text = text;
        existing->Line = line;
      }
      return;
    }
    fields.push_back({name, type, text, line});
  };

  for (const auto& field : driversDefaults) {
    if (ModelField* existing = FindFirst(defaults, field.Name())) {
      if (existing->Type == field.ValueType()) existing->Text = PlainValue(field);
    } else {
      defaults.push_back({field.Name(), field.ValueType(), PlainValue(field), 0});
    }
  }

  auto start = [&](const XmlElement& element) -> bool {
    const std::string& name = element.Name;
    const State top = states.back();
    State pushed;
    if (name == "Defaults") {
      current = -1;
      pushed = InDefaults;
    } else if (name == "DataBase") {
      DatabaseDeclaration declaration;
      declaration.Line = element.Line;
      bool active = false;
      bool platform = true;
      for (const auto& [attribute, value] : element.Attributes) {
        if (attribute == "Name") declaration.Name = value;
        if (attribute == "Active") active = value != "No";
        if (attribute == "Platform") {
          declaration.Platform = value;
          platform = PlatformListSupported(value);
        }
      }
      if (!active) {
        declaration.Result = element.Attribute("Active") == nullptr
                                 ? DatabaseDeclaration::NoActiveAttribute
                                 : DatabaseDeclaration::Inactive;
      } else if (!platform) {
        declaration.Result = DatabaseDeclaration::OtherPlatform;
      } else if (!badPattern.empty()) {
        declaration.Result = DatabaseDeclaration::BadPattern;
        declaration.Pattern = badPattern;
      } else if (restricted) {
        bool matched = false;
        for (const auto& matcher : matchers) {
          try {
            matcher->reset(declaration.Name);
            matched = matcher->matches();
          } catch (const QRError&) {
            matched = false;
          }
          if (matched) break;
        }
        if (!matched) declaration.Result = DatabaseDeclaration::NotActiveSource;
      }
      if (declaration.Result == DatabaseDeclaration::Accepted) {
        declaration.Fields = defaults;
        PushBack(declaration.Fields,
                 {"Configuration File", ValueTag::String, configurationFile, 0});
        PushBack(declaration.Fields, {"Directory", ValueTag::String, directory, 0});
        for (const auto& [type, text] : versions)
          PushBack(declaration.Fields, {type, ValueTag::String, text, 0});
        current = static_cast<long>(m_Databases.size());
        pushed = InDatabase;
      } else {
        pushed = Skip;
      }
      m_Databases.push_back(std::move(declaration));
    } else if (name == "Alias") {
      pushed = top == InDatabase ? InAlias : Skip;
    } else if (name == "Libraries") {
      pushed = Skip;
      if (top != Skip) {
        set("Library", ValueTag::String, "Undefined", element.Line);
        pushed = InLibraries;
      }
    } else if (name == "Library" || name == "Parameter") {
      pushed = top != Skip && PlatformAttributeSupported(element) ? InText : Skip;
    } else {
      return false;
    }
    states.push_back(pushed);
    return true;
  };

  auto end = [&](const XmlElement& element) {
    const State popped = states.back();
    states.pop_back();
    if (element.Name == "Alias" && popped == InAlias && current >= 0) {
      m_Databases[static_cast<std::size_t>(current)].Aliases.emplace_back(element.Text,
                                                                          element.Line);
    } else if (element.Name == "Library" && popped == InText && states.back() != InLibraries) {
      set("Library", ValueTag::String, element.Text, element.Line);
    } else if (element.Name == "Parameter" && popped == InText) {
      const std::string* fieldName = element.Attribute("Name");
      std::string value;
      const ValueTag type = ClassifyValue(element.Text, &value);
      set(fieldName ? *fieldName : "", type, value, element.Line);
    }
  };

  struct Open {
    std::size_t Element;
    bool Pushed;
  };
  std::vector<Open> open;
  const auto& elements = document.Elements;
  for (std::size_t i = 0; i < elements.size(); ++i) {
    while (!open.empty() && elements[open.back().Element].Depth >= elements[i].Depth) {
      if (open.back().Pushed) end(elements[open.back().Element]);
      open.pop_back();
    }
    open.push_back({i, start(elements[i])});
  }
  while (!open.empty()) {
    if (open.back().Pushed) end(elements[open.back().Element]);
    open.pop_back();
  }
}

}  // namespace qrconfig
