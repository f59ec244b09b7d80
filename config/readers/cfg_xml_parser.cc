#include "qr_config/config/readers/cfg_xml_parser.h"
#include "qr_config/config/readers/diagnostic_text.h"

#include <Poco/String.h>

#include "qr_config/config/readers/load_trace.h"
#include "qr_config/platform/i18n_string.h"
#include "qr_config/platform/orv_locale.h"
#include "qr_config/platform/process.h"
#include "qr_config/platform/qr_error.h"

namespace {

using DiagnosticText::Quoted;
using DiagnosticText::TypeName;
using DiagnosticText::TypeNameWithArticle;

const ucs2string kLocale("Locale");
const ucs2string kLanguage("Language");
const ucs2string kCharSet("CharSet");
const ucs2string kPlatform("Platform");
const ucs2string kSettings("Settings");
const ucs2string kLibrary("Library");
const ucs2string kServer("Server");
const ucs2string kParameter("Parameter");
const ucs2string kName("Name");
const ucs2string kActiveDataSources("ActiveDataSources");
const ucs2string kNetworkLayer("NetworkLayer");
const ucs2string kDataBase("DataBase");
const ucs2string kDriverDefaults("DriverDefaults");
const ucs2string kTrace("Trace");
const ucs2string kLogger("Logger");
const ucs2string kTraces("Traces");
const ucs2string kImplementation("Implementation");
const ucs2string kClassID("ClassID");
const ucs2string kActive("Active");
const ucs2string kNo("No");
const ucs2string kNativeImplementation("C");

const std::string kActiveField("Active");
const std::string kClassIDField("ClassID");

const std::string kLibrarySection("Library");
const std::string kServerSection("Server");

// "<Parameter Name="Port">", for messages.
std::string Described(const std::string& element, const std::string& name) {
  return "<" + element + " Name=" + Quoted(name) + ">";
}

// " on line 35", or nothing when the line is unknown.
std::string LineOf(const ValueOrigin* origin) {
  if (origin == nullptr || origin->Where.Line == 0) return std::string();
  return " on line " + std::to_string(origin->Where.Line);
}

}  // namespace

const std::vector<ElementVocabulary>& CfgXmlParser::Vocabulary() {
  static const std::vector<ElementVocabulary> kWords = {
      VocabularyEntry(kLocale),
      VocabularyEntry(kLanguage),
      VocabularyEntry(kCharSet, {&kPlatform}),
      VocabularyEntry(kSettings),
      VocabularyEntry(kLibrary),
      VocabularyEntry(kServer),
      VocabularyEntry(kParameter, {&kName}),
      VocabularyEntry(kActiveDataSources),
      VocabularyEntry(kNetworkLayer, {&kName}),
      VocabularyEntry(kDataBase, {&kName}),
      VocabularyEntry(kDriverDefaults),
      VocabularyEntry(kTraces, {&kActive}),
      VocabularyEntry(kLogger, {&kImplementation, &kClassID}),
      VocabularyEntry(kTrace, {&kName, &kActive}),
  };
  return kWords;
}

CfgXmlParser::CfgXmlParser(Initialization::Mode mode, PlatformLocales* platformLocales,
                           TreeNode* driversDefaults, TreeNode* dbDrivers, TreeNode* traces,
                           TreeNode* activeDataSources)
    : ReaderFrame(kConfigFileCodes, FileRole::MainFile, Vocabulary()),
      m_Mode(mode),
      m_PlatformLocales(platformLocales),
      m_DBDriversNode(dbDrivers),
      m_DriversDefaultsNode(driversDefaults),
      m_TracesNode(traces),
      m_ActiveDataSourcesNode(activeDataSources) {
  m_ActiveStack.push_back(true);
}

CfgXmlParser::~CfgXmlParser() = default;

void CfgXmlParser::StartElementHandler(const unsigned short* name,
                                       const OrvXmlAttributeValue* attributes) {
  if (m_Trace != nullptr) ObserveStart(name, attributes);
  if (name == kLanguage) {
    m_State = InLanguage;
  } else if (name == kCharSet) {
    m_State = InCharSet;
    for (const OrvXmlAttributeValue* a = attributes; a->Name != nullptr; ++a) {
      if (a->Name == kPlatform) ReaderText::Assign(a->Value, m_Name);
    }
  } else if (name == kSettings) {
    m_State = InSettings;
    m_NodeStack.push_back(m_DBDriversNode);
    if (m_Trace != nullptr && m_Trace->NodeLocation(m_DBDriversNode->value()).File.empty())
      m_Trace->SetNodeLocation(m_DBDriversNode->value(), ElementStart());
  } else if (name == kLibrary) {
    m_State = m_Mode == Initialization::Library ? InModeSection : Outside;
  } else if (name == kServer) {
    m_State = m_Mode == Initialization::Server ? InModeSection : Outside;
  } else if (name == kParameter) {
    if (m_Trace != nullptr) TraceParameterStart();
    if (m_State == Outside) return;
    ++m_State;
    for (const OrvXmlAttributeValue* a = attributes; a->Name != nullptr; ++a) {
      if (a->Name == kName) ReaderText::Assign(a->Value, m_Name);
    }
  } else if (name == kActiveDataSources) {
    if (m_State != Outside) {
      m_NodeStack.push_back(m_ActiveDataSourcesNode);
      if (m_Trace != nullptr)
        m_Trace->SetNodeLocation(m_ActiveDataSourcesNode->value(), ElementStart());
    } else if (m_Trace != nullptr) {
      m_Trace->Report(DiagnosticSeverity::Warning, DiagnosticKind::IgnoredElement, Here(),
                      "<ActiveDataSources> stands outside <Settings>: the reader ignores it "
                      "and everything in it.");
    }
  } else if (name == kNetworkLayer || name == kDataBase) {
    if (m_State == Outside) {
      if (m_Trace != nullptr)
        m_Trace->Report(DiagnosticSeverity::Warning, DiagnosticKind::IgnoredElement, Here(),
                        std::string("<") + (name == kDataBase ? "DataBase" : "NetworkLayer") +
                            "> stands outside <Settings>: the reader ignores it.");
      return;
    }
    for (const OrvXmlAttributeValue* a = attributes; a->Name != nullptr; ++a) {
      if (a->Name == kName) {
        ReaderText::Assign(a->Value, m_Value);
        CreateNode(m_Value);
        if (m_Trace != nullptr)
          m_Trace->SetNodeLocation(m_NodeStack.back()->value(), ElementStart());
        return;
      }
    }
    if (m_Trace != nullptr) {
      const std::string element = name == kDataBase ? "DataBase" : "NetworkLayer";
      m_Trace->Report(DiagnosticSeverity::Warning, DiagnosticKind::IgnoredElement, Here(),
                      "<" + element +
                          "> has no \"Name\": no node is made for it, and its end "
                          "tag closes the node of the element around it instead.");
    }
  } else if (name == kDriverDefaults) {
    m_State = InDriverDefaults;
    m_NodeStack.push_back(m_DriversDefaultsNode);
    if (m_Trace != nullptr && m_Trace->NodeLocation(m_DriversDefaultsNode->value()).File.empty())
      m_Trace->SetNodeLocation(m_DriversDefaultsNode->value(), ElementStart());
  } else if (name == kTraces) {
    for (const OrvXmlAttributeValue* a = attributes; a->Name != nullptr; ++a) {
      if (a->Name == kActive) {
        Node& traces = m_TracesNode->value();
        const bool active = !(a->Value == kNo);
        if (traces.push_back(Field(kActiveField, active)) && m_Trace != nullptr) {
          TraceKeyword(a->Value, kNo, "Active", "the traces count as active");
          TraceValue(traces, traces.back(), "Traces", active ? "true" : "false");
        }
        m_ActiveStack.push_back(true);
      }
    }
  } else if (name == kLogger) {
    LoggerStart(attributes);
  } else if (name == kTrace) {
    TraceStart(attributes);
  }
}

void CfgXmlParser::EndElementHandler(const unsigned short* name) {
  EndScope scope(*this);
  if (name == kLocale) {
    m_LocaleId.clear();
    m_State = Outside;
  } else if (name == kLanguage) {
    if (m_Trace != nullptr) TraceLayout(m_LocaleId, "<Language>");
    m_State = Outside;
  } else if (name == kCharSet) {
    if (m_Trace != nullptr) TraceLayout(m_CharSet, "<CharSet>");
    RegisterLocale();
    m_CharSet.clear();
    m_Name.clear();
    m_State = Outside;
  } else if (name == kParameter) {
    if (m_State != Outside) ParameterEnd();
  } else if (name == kSettings || name == kDriverDefaults) {
    m_State = Outside;
    if (m_Trace != nullptr && m_NodeStack.empty())
      SetStackCause(name == kSettings ? "Settings" : "DriverDefaults");
    Pop();
  } else if (name == kActiveDataSources || name == kNetworkLayer || name == kDataBase) {
    if (m_State != Outside) {
      if (m_Trace != nullptr && m_NodeStack.empty())
        SetStackCause(name == kDataBase       ? "DataBase"
                      : name == kNetworkLayer ? "NetworkLayer"
                                              : "ActiveDataSources");
      Pop();
    }
  } else if (name == kTrace) {
    TraceEnd();
  }
}

void CfgXmlParser::CharacterDataHandler(const unsigned short* text, int length) {
  if (m_Trace != nullptr) ObserveText(text, length);
  std::string* target = nullptr;
  switch (m_State) {
    case InLanguage:
      target = &m_LocaleId;
      break;
    case InCharSet:
      target = &m_CharSet;
      break;
    case InSettingsParameter:
    case InModeParameter:
    case InDefaultsParameter:
      target = &m_Text;
      break;
    default:
      return;
  }
  ReaderText::AppendCut(text, length, *target);
}

void CfgXmlParser::CreateNode(const std::string& name) {
  if (m_Trace != nullptr && m_NodeStack.empty()) SetStackCause("NetworkLayer");
  TreeNode& parent = Top();
  m_NodeStack.push_back(&*parent.ch_push_back(Node(name)));
}

CfgXmlParser::TreeNode& CfgXmlParser::Top() {
  if (m_NodeStack.empty()) ThrowQRError(QRErrorCode::FileRefused);
  return *m_NodeStack.back();
}

void CfgXmlParser::Pop() {
  if (m_NodeStack.empty()) ThrowQRError(QRErrorCode::FileRefused);
  m_NodeStack.pop_back();
}

void CfgXmlParser::LoggerStart(const OrvXmlAttributeValue* attributes) {
  bool native = false;
  m_Value.clear();
  for (const OrvXmlAttributeValue* a = attributes; a->Name != nullptr; ++a) {
    if (a->Name == kImplementation) {
      native = a->Value == kNativeImplementation;
      if (m_Trace != nullptr)
        TraceKeyword(a->Value, kNativeImplementation, "Implementation",
                     "the logger is not taken as native and no \"ClassID\" field is made");
    } else if (a->Name == kClassID) {
      ReaderText::Assign(a->Value, m_Value);
    }
  }
  if (!native) return;
  Node& traces = m_TracesNode->value();
  if (traces.push_back(Field(kClassIDField, m_Value)) && m_Trace != nullptr)
    TraceValue(traces, traces.back(), "Traces", m_Value);
}

void CfgXmlParser::TraceStart(const OrvXmlAttributeValue* attributes) {
  // A pending name means the enclosing "Trace" holds traces: it is a group and gets its node,
  // always directly below the Traces node.
  if (!m_Name.empty()) {
    m_NodeStack.push_back(&*m_TracesNode->ch_push_back(Node(m_Name)));
    if (m_Trace != nullptr) {
      // The group's own start tag is the enclosing element's.
      const SourceLocation here = ElementStart();
      m_Trace->SetNodeLocation(m_NodeStack.back()->value(), here);
    }
  }
  bool active = false;
  for (const OrvXmlAttributeValue* a = attributes; a->Name != nullptr; ++a) {
    if (a->Name == kName) {
      ReaderText::Assign(a->Value, m_Name);
    } else if (a->Name == kActive) {
      active = !(a->Value == kNo);
      if (m_Trace != nullptr) TraceKeyword(a->Value, kNo, "Active", "the trace counts as active");
    }
  }
  // The stack never runs empty: the constructor's entry is never popped.
  m_ActiveStack.push_back(active && m_ActiveStack.back());
}

void CfgXmlParser::TraceEnd() {
  if (m_Trace != nullptr && m_NodeStack.empty()) SetStackCause("Trace");
  if (m_Name.empty()) {
    Pop();
  } else {
    Node& node = Top().value();
    const bool active = m_ActiveStack.back();
    if (node.push_back(Field(m_Name, active)) && m_Trace != nullptr)
      TraceValue(node, node.back(), "Traces", active ? "true" : "false");
    m_Name.clear();
  }
  if (m_ActiveStack.size() > 1) m_ActiveStack.pop_back();
}

void CfgXmlParser::ParameterEnd() {
  if (m_State == InSettingsParameter || m_State == InDefaultsParameter) {
    if (m_Trace != nullptr && m_NodeStack.empty()) SetStackCause("Parameter");
    Node& node = Top().value();
    if (m_Trace == nullptr) {
      node.push_back(MakeField(m_Name, m_Text));
    } else {
      const Field* before = node.Exists(m_Name) ? &node.Find(m_Name) : nullptr;
      const std::size_t sizeBefore = node.size();
      node.push_back(MakeField(m_Name, m_Text));
      TraceSetting(node, before, sizeBefore,
                   m_State == InSettingsParameter ? "Settings" : "DriverDefaults");
    }
  } else if (m_State == InModeParameter) {
    // The mode section only changes existing fields of the same type; anything else is
    // ignored, which the checks below decide without raising.
    Node& drivers = m_DBDriversNode->value();
    if (m_Trace != nullptr) {
      const Field* field = drivers.Exists(m_Name) ? &drivers.Find(m_Name) : nullptr;
      TraceModeParameter(drivers, field, Classify(m_Text));
    }
    if (drivers.Exists(m_Name)) {
      Field& field = drivers.Find(m_Name);
      const Value value = Classify(m_Text);
      switch (value.Type) {
        case Value::Bool:
          if (field.ValueType() == Field::Bool) field.Update(value.Boolean);
          break;
        case Value::Long:
          if (field.ValueType() == Field::Long) field.Update(value.Integer);
          break;
        case Value::String:
          if (field.ValueType() == Field::String) field.Update(m_Text);
          break;
      }
    }
  }
  m_Name.clear();
  m_Text.clear();
  --m_State;
}

void CfgXmlParser::RegisterLocale() {
  const auto parts = orv_locale::splitLocaleId(m_LocaleId);
  const Quorin::LocaleDescriptor descriptor(parts.first, parts.second, m_CharSet);
  const Process& process = Process::Instance();
  const auto file = [&](const std::string& platform) {
    const bool filed = (*m_PlatformLocales)[platform].try_emplace(m_LocaleId, descriptor).second;
    if (filed || m_Trace == nullptr) return;
    m_Trace->Report(DiagnosticSeverity::Note, DiagnosticKind::NameCollision, ElementStart(),
                    "The locale " + Quoted(m_LocaleId) + " is already filed for the platform " +
                        Quoted(platform) + " by an earlier <Locale>: this entry is not.",
                    m_LocaleId);
  };
  if (m_Mode == Initialization::Library) {
    if (!m_Name.empty() && !process.PlatformSupported(m_Name)) return;
    file(process.Name());
  } else {
    for (const std::string& platform : process.OSList(m_Name)) file(platform);
  }
}

void CfgXmlParser::TraceParameterStart() {
  const std::string& parent = ParentName();
  if (m_State == Outside) {
    // A parameter of the other mode's section is left out by design.
    if (parent == kLibrarySection || parent == kServerSection) return;
    m_Trace->Report(DiagnosticSeverity::Warning, DiagnosticKind::IgnoredElement, Here(),
                    "<Parameter> stands outside <Settings>, <DriverDefaults> and the section of "
                    "the running mode: the reader ignores it.");
  } else if (m_State == InModeSection && parent != kLibrarySection && parent != kServerSection) {
    m_Trace->Report(
        DiagnosticSeverity::Warning, DiagnosticKind::IgnoredElement, Here(),
        "<Parameter> stands after the <" +
            std::string(m_Mode == Initialization::Library ? "Library" : "Server") +
            "> section, whose state lasts until another section starts: the reader takes it as "
            "a parameter of that section, which only changes an existing setting.");
  }
}

void CfgXmlParser::TraceSetting(Node& node, const Field* before, std::size_t sizeBefore,
                                std::string_view source) {
  const std::string what = Described("Parameter", m_Name);
  TraceLayout(m_Text, what);
  TraceClassification(m_Text, what);
  const std::string section = "<" + std::string(source) + ">";
  if (node.size() == sizeBefore) {
    m_Trace->Report(DiagnosticSeverity::Note, DiagnosticKind::DuplicateSetting, ElementStart(),
                    Quoted(m_Name) + " is given again in " + section +
                        " with the same value: the repetition changes nothing.",
                    m_Name);
    return;
  }
  const Field& added = node.back();
  TraceValue(node, added, source, m_Text);
  if (before == nullptr) return;
  const ValueOrigin* first = m_Trace->OriginOf(node, *before);
  if (source == "Settings") {
    m_Trace->Report(DiagnosticSeverity::Warning, DiagnosticKind::DuplicateSetting, ElementStart(),
                    Quoted(m_Name) + " is given a second time in " + section + " (first" +
                        LineOf(first) + "): every look-up finds the first value, " +
                        Quoted(first != nullptr ? std::string(first->Text) : std::string()) +
                        ", so " + Quoted(m_Text) + " is never read.",
                    m_Name);
  } else if (before->ValueType() == added.ValueType()) {
    m_Trace->Report(DiagnosticSeverity::Warning, DiagnosticKind::DuplicateSetting, ElementStart(),
                    Quoted(m_Name) + " is given a second time in " + section + " (first" +
                        LineOf(first) +
                        "): every database merges the defaults in order and receives the later "
                        "value, " +
                        Quoted(m_Text) + ".",
                    m_Name);
  }
}

void CfgXmlParser::TraceModeParameter(const Node& drivers, const Field* field, const Value& value) {
  const std::string section =
      m_Mode == Initialization::Library ? "<Library> section" : "<Server> section";
  const std::string what = Described("Parameter", m_Name);
  TraceLayout(m_Text, what);
  if (field == nullptr) {
    m_Trace->Report(DiagnosticSeverity::Warning, DiagnosticKind::IgnoredElement, ElementStart(),
                    "The " + section + " sets " + Quoted(m_Name) +
                        ", which <Settings> does not give: a mode section only changes existing "
                        "settings, so this changes nothing.",
                    m_Name);
    return;
  }
  const Field::ValueTag given = value.Type == Value::Bool   ? Field::Bool
                                : value.Type == Value::Long ? Field::Long
                                                            : Field::String;
  const ValueOrigin* previous = m_Trace->OriginOf(drivers, *field);
  if (given != field->ValueType()) {
    m_Trace->Report(
        DiagnosticSeverity::Warning, DiagnosticKind::ValueType, ElementStart(),
        "The " + section + " gives " + Quoted(m_Name) + " the " + TypeName(given) + " " +
            Quoted(m_Text) + ", but the setting is " + TypeNameWithArticle(field->ValueType()) +
            (previous != nullptr
                 ? " (written " + Quoted(std::string(previous->Text)) + LineOf(previous) + ")"
                 : std::string()) +
            ": the reader ignores the change.",
        m_Name);
    return;
  }
  TraceValue(drivers, *field,
             m_Mode == Initialization::Library ? "Library section" : "Server section", m_Text);
}

void CfgXmlParser::TraceKeyword(const unsigned short* value, const ucs2string& keyword,
                                const char* attribute, const char* meaning) {
  if (value == keyword) return;
  std::string written;
  std::string expected;
  ReaderText::Assign(value, written);
  AppendUtf16AsUtf8(keyword.data(), keyword.size(), expected);
  if (Poco::icompare(written, expected) != 0) return;
  m_Trace->Report(DiagnosticSeverity::Warning, DiagnosticKind::CaseVariant, Here(),
                  std::string(attribute) + "=" + Quoted(written) + " is not " + Quoted(expected) +
                      ": values are compared exactly, so " + meaning + ".",
                  written);
}

void CfgXmlParser::SetStackCause(const char* element) {
  std::string message;
  if (std::string(element) == "Trace") {
    message = "The single trace " + Described("Trace", m_Name) +
              " stands outside any trace group: the reader has no node to put it in and stops "
              "with QRError 267.";
  } else {
    message = "The end of <" + std::string(element) +
              "> closes a node that is no longer open (an unnamed <NetworkLayer> or <DataBase> "
              "before it closed the one around it): the reader stops with QRError 267.";
  }
  m_Trace->SetCause(DiagnosticKind::Structure, Here(), std::move(message));
}
