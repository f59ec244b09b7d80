#include "qr_config/config/readers/dsf_xml_parser.h"
#include "qr_config/config/readers/diagnostic_text.h"

#include <Poco/String.h>

#include <algorithm>
#include <cstddef>
#include <functional>
#include <memory>
#include <type_traits>
#include <utility>

#include "qr_config/config/model/model_builder.h"
#include "qr_config/config/readers/load_trace.h"
#include "qr_config/platform/i18n_string.h"
#include "qr_config/platform/process.h"
#include "qr_config/platform/qr_error.h"

namespace {

using DiagnosticText::Quoted;
using DiagnosticText::TypeNameWithArticle;

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
ConfigManagerTypes::Field* ScanForField(ConfigManagerTypes::Node& node, const std::string& name) {
  for (ConfigManagerTypes::Field& field : node) {
    if (field.Name() == name) return &field;
  }
  return nullptr;
}

// Whether `name` (an element or attribute name, never null) is `word`, compared in place: a
// shorter name stops the loop at its terminating zero, which no word holds.
bool Is(const unsigned short* name, const ucs2string& word) {
  const auto* units = word.data();
  const std::size_t size = word.size();
  for (std::size_t i = 0; i < size; ++i) {
    if (name[i] != units[i]) return false;
  }
  return name[size] == 0;
}

}  // namespace

const std::vector<ElementVocabulary>& DsfXmlParser::Vocabulary() {
  static const std::vector<ElementVocabulary> kWords = {
      VocabularyEntry(kDefaults),
      VocabularyEntry(kDataBase, {&kName, &kActive, &kPlatform}),
      VocabularyEntry(kParameter, {&kName, &kPlatform}),
      VocabularyEntry(kLibrary, {&kPlatform}),
      VocabularyEntry(kLibraries),
      VocabularyEntry(kAlias),
  };
  return kWords;
}

DsfXmlParser::DsfXmlParser(const TreeNode& driversDefaults, TreeNode& driver,
                           std::map<std::string, std::string>& nameTable,
                           const SetupXmlParser& setup, LoadTrace* trace)
    : ReaderFrame(kDataFileCodes, FileRole::DataAccessFile, Vocabulary()),
      m_Driver(driver),
      m_NameTable(nameTable),
      m_Setup(setup),
      m_Defaults(kDefaultsNode),
      m_Libraries(kLibrariesNode),
      m_Prototype(kDefaultsNode) {
  m_States.push_back(Skip);
  SetTrace(trace);
  if (trace == nullptr) {
    m_Defaults.Update(driversDefaults.value());
  } else {
    m_Quiet.push_back(false);
    TraceMerge(driversDefaults.value());
  }
}

DsfXmlParser::~DsfXmlParser() {
  if (m_Trace != nullptr) {
    m_Trace->Forget(m_Defaults);
    m_Trace->Forget(m_Libraries);
  }
}

void DsfXmlParser::SetActiveDatabases(const std::vector<std::string>& patterns,
                                      const std::vector<SourceLocation>& places) {
  m_ActivePatterns = patterns;
  m_ActiveMatchers.clear();
  m_ActiveMatchers.resize(patterns.size());
  m_PatternPlaces = places;
  m_PatternPlaces.resize(patterns.size());
}

void DsfXmlParser::BeginParse(const Poco::Path& file) {
  m_FileName = file.toString();
  m_PrototypeValid = false;
}

void DsfXmlParser::EndParse() {
  RecordDatabase();
  if (m_Trace == nullptr) return;
  for (std::size_t i = 0; i < m_ActivePatterns.size(); ++i) {
    if (m_ActiveMatchers[i]) continue;
    try {
      RegularExpression::Matcher check(m_ActivePatterns[i], 0);
    } catch (const QRError&) {
      m_Trace->Report(
          DiagnosticSeverity::Warning, DiagnosticKind::InvalidPattern, m_PatternPlaces[i],
          "The active data-source pattern " + Quoted(m_ActivePatterns[i]) + " of " +
              Quoted(m_Driver.value().Name()) +
              " is not a valid regular expression. It was not needed for " + Quoted(m_FileName) +
              ", since an earlier pattern matched every database tried, but as "
              "soon as it is tried, loading the driver fails with QRError 283.",
          m_ActivePatterns[i], QRErrorCode::InvalidPattern);
    }
  }
}

void DsfXmlParser::Push(std::int32_t state, bool quiet) {
  m_States.push_back(state);
  if (m_Trace == nullptr) return;
  m_Quiet.push_back(quiet);
  if (quiet) ++m_QuietDepth;
}

// Element names are tested in the order of their frequency in a data-access file, most
// frequent first; they exclude one another, so the order changes no result. Is() settles
// most mismatches on the first unit.
void DsfXmlParser::StartElementHandler(const unsigned short* name,
                                       const OrvXmlAttributeValue* attributes) {
  if (m_Trace != nullptr) ObserveStart(name, attributes);
  if (Is(name, kParameter)) {
    if (Top() == Skip) {
      if (m_Trace != nullptr) TraceOutOfPlace("Parameter");
      Push(Skip);
      return;
    }
    for (const OrvXmlAttributeValue* a = attributes; a->Name != nullptr; ++a) {
      if (Is(a->Name, kName)) ReaderText::Assign(a->Value, m_ParameterName);
    }
    const bool applies = PlatformCheck(attributes);
    Push(applies ? InText : Skip, !applies);
  } else if (Is(name, kAlias)) {
    if (Top() != InDatabase && m_Trace != nullptr) TraceOutOfPlace("Alias");
    Push(Top() == InDatabase ? InAlias : Skip);
  } else if (Is(name, kDataBase)) {
    const bool accepted = Accept(attributes);
    Push(accepted ? InDatabase : Skip, !accepted);
  } else if (Is(name, kLibrary)) {
    if (Top() == Skip) {
      if (m_Trace != nullptr) TraceOutOfPlace("Library");
      Push(Skip);
      return;
    }
    const bool applies = PlatformCheck(attributes);
    Push(applies ? InText : Skip, !applies);
  } else if (Is(name, kLibraries)) {
    if (Top() == Skip) {
      if (m_Trace != nullptr) TraceOutOfPlace("Libraries");
      Push(Skip);
      return;
    }
    SetLibrary(kUndefinedLibrary, "Libraries");
    if (m_Trace != nullptr) m_Trace->Forget(m_Libraries);
    m_Libraries.clear();
    Push(InLibraries);
  } else if (Is(name, kDefaults)) {
    if (m_CurrentNode == m_DatabaseNode) RecordDatabase();
    m_CurrentNode = &m_Defaults;
    Push(InDefaults);
  }
}

void DsfXmlParser::EndElementHandler(const unsigned short* name) {
  EndScope scope(*this);
  if (Is(name, kParameter)) {
    if (Top() == InText) {
      SetParameter();
      m_ParameterName.clear();
      m_Text.clear();
    }
    Pop();
  } else if (Is(name, kAlias)) {
    if (Top() == InAlias) {
      const auto entry = m_NameTable.try_emplace(m_Text, m_CurrentNode->Name());
      if (m_Trace != nullptr) {
        TraceLayout(m_Text, "<Alias>");
        if (!entry.second && entry.first->second != m_CurrentNode->Name())
          m_Trace->Report(
              DiagnosticSeverity::Warning, DiagnosticKind::NameCollision, ElementStart(),
              "The alias " + Quoted(m_Text) + " of the database " + Quoted(m_CurrentNode->Name()) +
                  " is already taken by " + Quoted(entry.first->second) + " of " +
                  Quoted(m_Driver.value().Name()) + ": it resolves to " +
                  Quoted(entry.first->second) + ".",
              m_Text);
      }
      m_Text.clear();
    }
    Pop();
  } else if (Is(name, kDataBase) || Is(name, kDefaults)) {
    Pop();
  } else if (Is(name, kLibrary)) {
    if (Pop() != InText) return;
    if (Top() == InLibraries) {
      const bool added = m_Libraries.push_back(Field(kLibraryField, m_Text));
      if (m_Trace != nullptr) {
        TraceLayout(m_Text, "<Library>");
        if (added && m_Trace->WantsValues())
          TraceValue(m_Libraries, m_Libraries.back(), "Libraries", m_Text);
      }
    } else {
      if (m_Trace != nullptr) TraceLayout(m_Text, "<Library>");
      SetLibrary(m_Text, m_CurrentNode == &m_Defaults ? "Defaults" : "DataBase");
    }
    m_Text.clear();
  } else if (Is(name, kLibraries)) {
    Pop();
    if (Top() == InDatabase && !m_Libraries.empty()) {
      TreeNode& list = *m_CurrentTreeNode->ch_push_back(m_Libraries);
      if (m_Trace != nullptr) {
        m_Trace->SetNodeLocation(list.value(), ElementStart());
        auto copy = list.value().begin();
        for (const Field& field : m_Libraries) {
          m_Trace->SetOrigin(list.value(), *copy, m_Trace->OriginOf(m_Libraries, field));
          ++copy;
        }
      }
    }
  }
}

void DsfXmlParser::CharacterDataHandler(const unsigned short* text, int length) {
  if (m_Trace != nullptr) ObserveText(text, length);
  if (Top() == InAlias || Top() == InText) ReaderText::AppendCut(text, length, m_Text);
}

std::int32_t DsfXmlParser::Pop() {
  const std::int32_t popped = m_States.back();
  if (m_States.size() > 1) {
    m_States.pop_back();
    if (m_Trace != nullptr) {
      if (m_Quiet.back()) --m_QuietDepth;
      m_Quiet.pop_back();
    }
  }
  return popped;
}

bool DsfXmlParser::Accept(const OrvXmlAttributeValue* attributes) {
  m_DatabaseName.clear();
  bool active = false;
  bool platform = true;
  if (m_Trace != nullptr) m_HasActive = false;
  for (const OrvXmlAttributeValue* a = attributes; a->Name != nullptr; ++a) {
    if (Is(a->Name, kName)) {
      ReaderText::Assign(a->Value, m_DatabaseName);
    } else if (Is(a->Name, kActive)) {
      active = !(a->Value == kNo);
      if (m_Trace != nullptr) {
        ReaderText::Assign(a->Value, m_Active);
        m_HasActive = true;
      }
    } else if (Is(a->Name, kPlatform)) {
      platform = PlatformSupported(a->Value);
    }
  }
  if (m_Trace != nullptr && m_HasActive && active && Poco::icompare(m_Active, "No") == 0)
    m_Trace->Report(DiagnosticSeverity::Warning, DiagnosticKind::CaseVariant, Here(),
                    "The database " + Quoted(m_DatabaseName) + " has Active=" + Quoted(m_Active) +
                        ", which is not \"No\": values are compared exactly, so it is loaded.",
                    m_Active);
  if (!active) {
    if (m_Trace != nullptr)
      TraceSkipped(m_HasActive ? "is not active (Active=\"No\")"
                               : "has no \"Active\" attribute, so it is never loaded",
                   !m_HasActive);
    return false;
  }
  if (!platform) {
    if (m_Trace != nullptr)
      TraceSkipped(("is for the platforms " + Quoted(m_PlatformList) +
                    ", none of which this process supports")
                       .c_str(),
                   false);
    return false;
  }
  if (!m_ActivePatterns.empty() && !MatchesActivePattern()) {
    if (m_Trace != nullptr) {
      std::string patterns;
      for (const std::string& pattern : m_ActivePatterns)
        patterns += (patterns.empty() ? "" : ", ") + Quoted(pattern);
      TraceSkipped(("matches none of the active data-source patterns of " +
                    Quoted(m_Driver.value().Name()) + " (" + patterns + ")")
                       .c_str(),
                   false);
    }
    return false;
  }
  AddDatabase();
  return true;
}

bool DsfXmlParser::MatchesActivePattern() {
  for (std::size_t i = 0; i < m_ActivePatterns.size(); ++i) {
    std::unique_ptr<RegularExpression::Matcher>& matcher = m_ActiveMatchers[i];
    try {
      if (!matcher) matcher = std::make_unique<RegularExpression::Matcher>(m_ActivePatterns[i], 0);
      matcher->reset(m_DatabaseName);
      if (matcher->matches()) return true;
    } catch (const QRError&) {
      if (m_Trace != nullptr)
        m_Trace->SetCause(
            DiagnosticKind::InvalidPattern, m_PatternPlaces[i],
            "The active data-source pattern " + Quoted(m_ActivePatterns[i]) + " of " +
                Quoted(m_Driver.value().Name()) +
                (matcher
                     ? " cannot be matched against the database name " + Quoted(m_DatabaseName) +
                           " (line " + std::to_string(CurrentLine()) + " of " + Quoted(m_FileName) +
                           ") within the matcher's limits (QRError 283)."
                     : " is not a valid regular expression (QRError 283); it is tried for "
                       "the database " +
                           Quoted(m_DatabaseName) + " (line " + std::to_string(CurrentLine()) +
                           " of " + Quoted(m_FileName) + ")."),
            m_ActivePatterns[i]);
      throw;
    }
  }
  return false;
}

void DsfXmlParser::AddDatabase() {
  // The node is appended first and filled in place, which saves copying it. Its first fields
  // are copies of the prototype's, without the duplicate test: merging the defaults into the
  // empty node with Node::Update would append each of them in order, since the defaults hold
  // one Bool, Long or String field per name (every change to them updates the first field
  // of a name or appends a new name), and the fields that follow were added to the prototype
  // by the push_back rule already.
  if (m_CurrentNode == m_DatabaseNode) RecordDatabase();
  m_DatabaseNode = nullptr;
  if (!m_PrototypeValid) BuildPrototype();
  TreeNode& database = ModelBuilder::AppendChild(m_Driver, m_DatabaseName);
  Node& node = database.value();
  // Room for the prototype and for as many added fields and texts as the previous database
  // took.
  ModelBuilder::Reserve(node, m_Prototype.size() + m_AddedFields.size(),
                        m_PrototypeBytes + m_AddedBytes);
  m_DatabaseFields.clear();
  m_AddedFields.clear();
  m_AddedBytes = 0;
  for (const Field& field : m_Prototype)
    m_DatabaseFields.push_back(&ModelBuilder::AppendCopy(node, field));
  m_DatabaseNode = &node;
  m_DatabaseRecorded = m_Table == nullptr;
  m_CurrentTreeNode = &database;
  m_CurrentNode = &node;
  const auto entry = m_NameTable.try_emplace(m_DatabaseName, m_DatabaseName);
  if (m_Trace == nullptr) return;
  if (m_DatabaseName.empty())
    m_Trace->Report(DiagnosticSeverity::Warning, DiagnosticKind::MissingName, Here(),
                    "A database of " + Quoted(m_Driver.value().Name()) +
                        " has no \"Name\": it loads under the empty name, which no node path "
                        "reaches.");

  // Every database made from the same defaults starts with the same fields: one template of
  // their origins serves them all until the defaults change.
  if (m_Template == nullptr) {
    LoadTrace::Template fields;
    for (const Field& field : m_Defaults) fields.push_back(m_Trace->OriginOf(m_Defaults, field));
    const SetupXmlParser::Places& places = m_Setup.ResultPlaces();
    const std::string_view setupFile = m_Setup.File();
    if (m_FileAdded)
      fields.push_back(
          m_Trace->NewOrigin({setupFile, places.DataFileName, 0}, "setup file", m_FileName));
    if (m_DirectoryAdded)
      fields.push_back(
          m_Trace->NewOrigin({setupFile, places.Directory, 0}, "setup file", m_Setup.Directory()));
    std::size_t index = 0;
    for (const auto& version : m_Setup.Versions()) {
      if (!m_VersionsAdded[index++]) continue;
      const auto line = places.Versions.find(version.first);
      fields.push_back(
          m_Trace->NewOrigin({setupFile, line == places.Versions.end() ? 0 : line->second, 0},
                             "setup file", version.second));
    }
    m_Template = m_Trace->KeepTemplate(std::move(fields));
  }
  m_Trace->SetTemplate(node, m_Template);
  m_Trace->SetNodeLocation(node, Here());
  if (!entry.second) {
    const bool twice = entry.first->second == m_DatabaseName;
    m_Trace->Report(
        DiagnosticSeverity::Warning, DiagnosticKind::NameCollision, Here(),
        twice
            ? "The database " + Quoted(m_DatabaseName) + " of " + Quoted(m_Driver.value().Name()) +
                  " is declared a second time: both are loaded, and every look-up "
                  "finds the first."
            : "The database name " + Quoted(m_DatabaseName) + " is already an alias of " +
                  Quoted(entry.first->second) + " of " + Quoted(m_Driver.value().Name()) +
                  ": resolving it gives " + Quoted(entry.first->second) + ".",
        m_DatabaseName);
  }
}

void DsfXmlParser::BuildPrototype() {
  m_PrototypeNames.clear();
  m_Prototype.clear();
  ModelBuilder::Reserve(m_Prototype, m_Defaults.size() + 2 + m_Setup.Versions().size());
  for (const Field& field : m_Defaults) ModelBuilder::Append(m_Prototype, field);
  m_FileAdded = m_Prototype.push_back(Field(kConfigurationFileField, m_FileName));
  m_DirectoryAdded = m_Prototype.push_back(Field(kDirectoryField, m_Setup.Directory()));
  m_VersionsAdded.clear();
  for (const auto& version : m_Setup.Versions())
    m_VersionsAdded.push_back(m_Prototype.push_back(Field(version.first, version.second)));
  std::size_t index = 0;
  m_PrototypeBytes = 0;
  for (const Field& field : m_Prototype) {
    m_PrototypeNames.try_emplace(field.Name(), index++);
    m_PrototypeBytes += ModelBuilder::TextBytes(field);
  }
  m_RecordedPositions.clear();
  if (m_Table != nullptr) {
    for (const std::string* name : m_Table->m_Names) {
      const auto known = m_PrototypeNames.find(*name);
      m_RecordedPositions.push_back(known != m_PrototypeNames.end() ? known->second : kNoPosition);
    }
  }
  m_PrototypeValid = true;
}

DsfXmlParser::Field* DsfXmlParser::FirstField(Node& node, const std::string& name) {
  if (&node != m_DatabaseNode) return ScanForField(node, name);
  const auto known = m_PrototypeNames.find(name);
  if (known != m_PrototypeNames.end()) return m_DatabaseFields[known->second];
  return AddedField(name);
}

DsfXmlParser::Field* DsfXmlParser::AddedField(const std::string& name) const {
  for (Field* field : m_AddedFields) {
    if (field->Name() == name) return field;
  }
  return nullptr;
}

void DsfXmlParser::RecordDatabase() {
  if (m_DatabaseRecorded || m_DatabaseNode == nullptr) return;
  DatabaseFields& table = *m_Table;
  // Room first (growing geometrically), so that the node and its fields are recorded
  // together or not at all.
  const auto room = [](auto& list, std::size_t more) {
    if (list.capacity() - list.size() < more)
      list.reserve(std::max(list.size() + more, 2 * list.capacity()));
  };
  room(table.m_Nodes, 1);
  room(table.m_Fields, table.m_Names.size());
  table.m_Nodes.push_back(m_CurrentTreeNode);
  // A name of the prototype has its first field there; another one among the added fields.
  for (std::size_t i = 0; i < table.m_Names.size(); ++i) {
    const std::size_t position = m_RecordedPositions[i];
    table.m_Fields.push_back(position != kNoPosition ? m_DatabaseFields[position]
                                                     : AddedField(*table.m_Names[i]));
  }
  m_DatabaseRecorded = true;
}

DsfXmlParser::Field* const* DsfXmlParser::DatabaseFields::Of(const TreeNode& node) {
  const std::size_t count = m_Names.size();
  if (m_Next < m_Nodes.size() && m_Nodes[m_Next] == &node) return &m_Fields[count * m_Next++];
  if (!m_Nodes.empty() && m_Nodes.front() == &node) {  // a new pass over the nodes
    m_Next = 1;
    return &m_Fields[0];
  }
  // Asked out of order: look the node up by its address.
  const std::less<const TreeNode*> before;
  if (m_ByAddress.size() != m_Nodes.size()) {
    m_ByAddress.resize(m_Nodes.size());
    for (std::size_t i = 0; i < m_Nodes.size(); ++i) m_ByAddress[i] = i;
    std::sort(m_ByAddress.begin(), m_ByAddress.end(),
              [&](std::size_t a, std::size_t b) { return before(m_Nodes[a], m_Nodes[b]); });
  }
  const auto found = std::lower_bound(
      m_ByAddress.begin(), m_ByAddress.end(), &node,
      [&](std::size_t i, const TreeNode* wanted) { return before(m_Nodes[i], wanted); });
  if (found == m_ByAddress.end() || m_Nodes[*found] != &node) return nullptr;
  m_Next = *found + 1;
  return &m_Fields[count * *found];
}

template <typename T>
void DsfXmlParser::AddField(const std::string& name, const T& value) {
  if (m_CurrentNode != m_DatabaseNode) {
    ModelBuilder::Append(*m_CurrentNode, name, value);
    return;
  }
  if constexpr (std::is_same_v<T, std::string>) {
    m_AddedFields.push_back(&ModelBuilder::AppendText(*m_CurrentNode, name, value));
    m_AddedBytes += ModelBuilder::TextBytes(value.size());
  } else {
    m_AddedFields.push_back(&ModelBuilder::Append(*m_CurrentNode, name, value));
  }
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
    if (Is(a->Name, kPlatform)) return PlatformSupported(a->Value);
  }
  return true;
}

void DsfXmlParser::SetLibrary(const std::string& value, std::string_view source) {
  if (m_CurrentNode == &m_Defaults) m_PrototypeValid = false;
  Field* field = FirstField(*m_CurrentNode, kLibraryField);
  if (m_Trace != nullptr && field != nullptr && field->ValueType() != Field::String)
    SetMismatchCause(*field, kLibraryField, value);
  if (field != nullptr) {
    field->Update(value);
  } else {
    AddField(kLibraryField, value);
  }
  if (m_Trace != nullptr) TraceSet(field, source, value);
}

void DsfXmlParser::SetParameter() {
  if (m_CurrentNode == &m_Defaults) m_PrototypeValid = false;
  Field* field = FirstField(*m_CurrentNode, m_ParameterName);
  if (m_Trace != nullptr) {
    const std::string what = "<Parameter Name=" + Quoted(m_ParameterName) + ">";
    TraceLayout(m_Text, what);
    TraceClassification(m_Text, what);
    if (field != nullptr) {
      const Value value = Classify(m_Text);
      const Field::ValueTag given = value.Type == Value::Bool   ? Field::Bool
                                    : value.Type == Value::Long ? Field::Long
                                                                : Field::String;
      if (given != field->ValueType()) SetMismatchCause(*field, m_ParameterName, m_Text);
    }
  }
  if (field != nullptr) {
    StoreValue(*field, m_Text);
  } else {
    // The field is made in place, typed as MakeField types it.
    const Value value = Classify(m_Text);
    switch (value.Type) {
      case Value::Bool:
        AddField(m_ParameterName, value.Boolean);
        break;
      case Value::Long:
        AddField(m_ParameterName, value.Integer);
        break;
      case Value::String:
        AddField(m_ParameterName, m_Text);
        break;
    }
  }
  if (m_Trace != nullptr)
    TraceSet(field, m_CurrentNode == &m_Defaults ? "Defaults" : "DataBase", m_Text);
}

// --- Diagnostics.

void DsfXmlParser::TraceMerge(const Node& driversDefaults) {
  // The merge runs field by field, each through Node::Update itself, so that the origin of
  // every default is known and a failure names the two values that clash.
  for (const Field& field : driversDefaults) {
    Field* before = ScanForField(m_Defaults, field.Name());
    const ValueOrigin* beforeOrigin = before ? m_Trace->OriginOf(m_Defaults, *before) : nullptr;
    const ValueOrigin* source = m_Trace->OriginOf(driversDefaults, field);
    const bool clash = before != nullptr && before->ValueType() != field.ValueType() &&
                       (before->ValueType() == Field::Bool || before->ValueType() == Field::Long ||
                        before->ValueType() == Field::String);
    if (clash)
      m_Trace->SetCause(
          DiagnosticKind::ValueType, source != nullptr ? source->Where : SourceLocation{},
          "The defaults of every database give " + Quoted(field.Name()) + " both as " +
              TypeNameWithArticle(before->ValueType()) + ", " + LoadTrace::Describe(beforeOrigin) +
              ", and as " + TypeNameWithArticle(field.ValueType()) + ", " +
              LoadTrace::Describe(source) + ": merging them fails with QRError 1.",
          field.Name());
    Node one(field.Name());
    one.push_back(field);
    m_Defaults.Update(one);
    Field* after = ScanForField(m_Defaults, field.Name());
    if (after == nullptr) continue;
    m_Trace->SetOrigin(
        m_Defaults, *after,
        before == nullptr || source == nullptr
            ? source
            : m_Trace->NewOrigin(source->Where, source->Source, source->Text, beforeOrigin));
  }
}

void DsfXmlParser::TraceOutOfPlace(const char* element) {
  if (m_QuietDepth > 0) return;
  m_Trace->Report(DiagnosticSeverity::Warning, DiagnosticKind::IgnoredElement, Here(),
                  std::string("<") + element +
                      (std::string(element) == "Alias"
                           ? "> stands outside an accepted <DataBase>: the reader skips it."
                           : "> stands outside <Defaults> and <DataBase>: the reader skips it "
                             "with everything inside it."));
}

void DsfXmlParser::TraceSkipped(const char* reason, bool warning) {
  m_Trace->Report(warning ? DiagnosticSeverity::Warning : DiagnosticSeverity::Note,
                  DiagnosticKind::DatabaseSkipped, Here(),
                  "The database " + Quoted(m_DatabaseName) + " of " +
                      Quoted(m_Driver.value().Name()) + " " + reason + ": it is skipped.",
                  m_DatabaseName);
}

void DsfXmlParser::SetMismatchCause(const Field& field, const std::string& name,
                                    const std::string& text) {
  const Value value = Classify(text);
  const Field::ValueTag given = value.Type == Value::Bool   ? Field::Bool
                                : value.Type == Value::Long ? Field::Long
                                                            : Field::String;
  m_Trace->SetCause(DiagnosticKind::ValueType, ElementStart(),
                    "The value " + Quoted(text) + " of " + Quoted(name) + " in " + Where() +
                        " is " + TypeNameWithArticle(given) + ", but the field it updates is " +
                        TypeNameWithArticle(field.ValueType()) + ", " +
                        LoadTrace::Describe(m_Trace->OriginOf(*m_CurrentNode, field)) +
                        ": the reader stops with QRError 1 and reads no more of the file.",
                    name);
}

void DsfXmlParser::TraceSet(Field* updated, std::string_view source, const std::string& text) {
  m_Trace->ClearCause();
  const Field& field = updated != nullptr ? *updated : m_CurrentNode->back();
  if (m_CurrentNode == &m_Defaults) {
    m_Template = nullptr;
  } else if (!m_Trace->Tracks(field.Name())) {
    return;
  }
  TraceValue(*m_CurrentNode, field, source, text);
}

std::string DsfXmlParser::Where() const {
  if (m_CurrentNode == &m_Defaults) return "the <Defaults> section";
  return "the database " + Quoted(m_CurrentNode->Name());
}
