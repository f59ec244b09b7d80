#include "qr_config/config/readers/dsf_xml_parser.h"

#include <cstddef>
#include <memory>
#include <utility>

#include "qr_config/platform/i18n_string.h"
#include "qr_config/platform/process.h"

namespace {

const ucs2string kDefaults("Defaults");
const ucs2string kDataBase("DataBase");
const ucs2string kAlias("Alias");
const ucs2string kLibraries("Libraries");
const ucs2string kLibrary("Library");
const ucs2string kParameter("Parameter");
const ucs2string kName("Name");
const ucs2string kActive("Active");
const ucs2string kPlatform("Platform");
const ucs2string kNo("No");

const std::string kDefaultsNode("Defaults");
const std::string kLibrariesNode("Libraries");
const std::string kLibraryField("Library");
const std::string kUndefinedLibrary("Undefined");
const std::string kConfigurationFileField("Configuration File");
const std::string kDirectoryField("Directory");

// The first field named `name`, as Node::Find finds it, or null: one scan where Node::Exists
// followed by Node::Find would take two.
ConfigManagerTypes::Field* FirstField(ConfigManagerTypes::Node& node, const std::string& name) {
  for (ConfigManagerTypes::Field& field : node) {
    if (field.Name() == name) return &field;
  }
  return nullptr;
}

}  // namespace

DsfXmlParser::DsfXmlParser(const TreeNode& driversDefaults, TreeNode& driver,
                           std::map<std::string, std::string>& nameTable,
                           const SetupXmlParser& setup)
    : ReaderFrame(kDataFileCodes),
      m_Driver(driver),
      m_NameTable(nameTable),
      m_Setup(setup),
      m_Defaults(kDefaultsNode),
      m_Libraries(kLibrariesNode) {
  m_States.push_back(Skip);
  m_Defaults.Update(driversDefaults.value());
}

DsfXmlParser::~DsfXmlParser() = default;

void DsfXmlParser::SetActiveDatabases(const std::vector<std::string>& patterns) {
  std::vector<std::unique_ptr<RegularExpression::Matcher>> matchers;
  matchers.reserve(patterns.size());
  for (const std::string& pattern : patterns) {
    matchers.push_back(std::make_unique<RegularExpression::Matcher>(pattern, 0));
  }
  m_ActiveMatchers = std::move(matchers);
}

void DsfXmlParser::BeginParse(const Poco::Path& file) {
  m_FileName = file.toString();
}

// Element names are tested in the order of their frequency in a data-access file, most
// frequent first; they exclude one another, so the order changes no result.
void DsfXmlParser::StartElementHandler(const unsigned short* name,
                                       const OrvXmlAttributeValue* attributes) {
  if (name == kParameter) {
    if (Top() == Skip) {
      m_States.push_back(Skip);
      return;
    }
    for (const OrvXmlAttributeValue* a = attributes; a->Name != nullptr; ++a) {
      if (a->Name == kName) ReaderText::Assign(a->Value, m_ParameterName);
    }
    m_States.push_back(PlatformCheck(attributes) ? InText : Skip);
  } else if (name == kAlias) {
    m_States.push_back(Top() == InDatabase ? InAlias : Skip);
  } else if (name == kDataBase) {
    m_States.push_back(Accept(attributes) ? InDatabase : Skip);
  } else if (name == kLibrary) {
    if (Top() == Skip) {
      m_States.push_back(Skip);
      return;
    }
    m_States.push_back(PlatformCheck(attributes) ? InText : Skip);
  } else if (name == kLibraries) {
    if (Top() == Skip) {
      m_States.push_back(Skip);
      return;
    }
    SetLibrary(kUndefinedLibrary);
    m_Libraries.clear();
    m_States.push_back(InLibraries);
  } else if (name == kDefaults) {
    m_CurrentNode = &m_Defaults;
    m_States.push_back(InDefaults);
  }
}

void DsfXmlParser::EndElementHandler(const unsigned short* name) {
  if (name == kParameter) {
    if (Top() == InText) {
      SetParameter();
      m_ParameterName.clear();
      m_Text.clear();
    }
    Pop();
  } else if (name == kAlias) {
    if (Top() == InAlias) {
      m_NameTable.try_emplace(m_Text, m_CurrentNode->Name());
      m_Text.clear();
    }
    Pop();
  } else if (name == kDataBase || name == kDefaults) {
    Pop();
  } else if (name == kLibrary) {
    if (Pop() != InText) return;
    if (Top() == InLibraries) {
      m_Libraries.push_back(Field(kLibraryField, m_Text));
    } else {
      SetLibrary(m_Text);
    }
    m_Text.clear();
  } else if (name == kLibraries) {
    Pop();
    if (Top() == InDatabase && !m_Libraries.empty()) m_CurrentTreeNode->ch_push_back(m_Libraries);
  }
}

void DsfXmlParser::CharacterDataHandler(const unsigned short* text, int length) {
  if (Top() == InAlias || Top() == InText) ReaderText::AppendCut(text, length, m_Text);
}

std::int32_t DsfXmlParser::Pop() {
  const std::int32_t popped = m_States.back();
  if (m_States.size() > 1) m_States.pop_back();
  return popped;
}

bool DsfXmlParser::Accept(const OrvXmlAttributeValue* attributes) {
  m_DatabaseName.clear();
  bool active = false;
  bool platform = true;
  for (const OrvXmlAttributeValue* a = attributes; a->Name != nullptr; ++a) {
    if (a->Name == kName) {
      ReaderText::Assign(a->Value, m_DatabaseName);
    } else if (a->Name == kActive) {
      active = !(a->Value == kNo);
    } else if (a->Name == kPlatform) {
      platform = PlatformSupported(a->Value);
    }
  }
  if (!active || !platform) return false;
  if (!m_ActiveMatchers.empty()) {
    bool matched = false;
    for (const auto& matcher : m_ActiveMatchers) {
      matcher->reset(m_DatabaseName);
      if (matcher->matches()) {
        matched = true;
        break;
      }
    }
    if (!matched) return false;
  }
  AddDatabase();
  return true;
}

void DsfXmlParser::AddDatabase() {
  // The node is appended first and filled in place, which saves copying it. The defaults hold
  // one Bool, Long or String field per name (every change to them updates the first field of
  // a name or appends a new name), so merging them into the empty node with Node::Update
  // appends each of them in order: a plain copy of the list gives the same fields without
  // Update's searches.
  TreeNode& database = *m_Driver.ch_push_back(Node(m_DatabaseName));
  Node& node = database.value();
  static_cast<tnode<Field>&>(node) = m_Defaults;
  node.push_back(Field(kConfigurationFileField, m_FileName));
  node.push_back(Field(kDirectoryField, m_Setup.Directory()));
  for (const auto& version : m_Setup.Versions())
    node.push_back(Field(version.first, version.second));
  m_CurrentTreeNode = &database;
  m_CurrentNode = &node;
  m_NameTable.try_emplace(m_DatabaseName, m_DatabaseName);
}

bool DsfXmlParser::PlatformSupported(const unsigned short* list) {
  ReaderText::Assign(list, m_PlatformList);
  const Process& process = Process::Instance();
  std::size_t begin = 0;
  for (;;) {
    const std::size_t comma = m_PlatformList.find(',', begin);
    const std::size_t end = comma == std::string::npos ? m_PlatformList.size() : comma;
    m_PlatformName.assign(m_PlatformList, begin, end - begin);
    if (process.PlatformSupported(m_PlatformName)) return true;
    if (comma == std::string::npos) return false;
    begin = comma + 1;
  }
}

bool DsfXmlParser::PlatformCheck(const OrvXmlAttributeValue* attributes) {
  for (const OrvXmlAttributeValue* a = attributes; a->Name != nullptr; ++a) {
    if (a->Name == kPlatform) return PlatformSupported(a->Value);
  }
  return true;
}

void DsfXmlParser::SetLibrary(const std::string& value) {
  if (Field* field = FirstField(*m_CurrentNode, kLibraryField)) {
    field->Update(value);
  } else {
    m_CurrentNode->push_back(Field(kLibraryField, value));
  }
}

void DsfXmlParser::SetParameter() {
  if (Field* field = FirstField(*m_CurrentNode, m_ParameterName)) {
    StoreValue(*field, m_Text);
  } else {
    m_CurrentNode->push_back(MakeField(m_ParameterName, m_Text));
  }
}
