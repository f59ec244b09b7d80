#include "qr_config/config/readers/cfg_xml_parser.h"

#include "qr_config/platform/i18n_string.h"
#include "qr_config/platform/orv_locale.h"
#include "qr_config/platform/process.h"
#include "qr_config/platform/qr_error.h"

namespace {

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

}  // namespace

CfgXmlParser::CfgXmlParser(Initialization::Mode mode, PlatformLocales* platformLocales,
                           TreeNode* driversDefaults, TreeNode* dbDrivers, TreeNode* traces,
                           TreeNode* activeDataSources)
    : ReaderFrame(kConfigFileCodes),
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
  } else if (name == kLibrary) {
    m_State = m_Mode == Initialization::Library ? InModeSection : Outside;
  } else if (name == kServer) {
    m_State = m_Mode == Initialization::Server ? InModeSection : Outside;
  } else if (name == kParameter) {
    if (m_State == Outside) return;
    ++m_State;
    for (const OrvXmlAttributeValue* a = attributes; a->Name != nullptr; ++a) {
      if (a->Name == kName) ReaderText::Assign(a->Value, m_Name);
    }
  } else if (name == kActiveDataSources) {
    if (m_State != Outside) m_NodeStack.push_back(m_ActiveDataSourcesNode);
  } else if (name == kNetworkLayer || name == kDataBase) {
    if (m_State == Outside) return;
    for (const OrvXmlAttributeValue* a = attributes; a->Name != nullptr; ++a) {
      if (a->Name == kName) {
        ReaderText::Assign(a->Value, m_Value);
        CreateNode(m_Value);
        return;
      }
    }
  } else if (name == kDriverDefaults) {
    m_State = InDriverDefaults;
    m_NodeStack.push_back(m_DriversDefaultsNode);
  } else if (name == kTraces) {
    for (const OrvXmlAttributeValue* a = attributes; a->Name != nullptr; ++a) {
      if (a->Name == kActive) {
        m_TracesNode->value().push_back(Field(kActiveField, !(a->Value == kNo)));
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
  if (name == kLocale) {
    m_LocaleId.clear();
    m_State = Outside;
  } else if (name == kLanguage) {
    m_State = Outside;
  } else if (name == kCharSet) {
    RegisterLocale();
    m_CharSet.clear();
    m_Name.clear();
    m_State = Outside;
  } else if (name == kParameter) {
    if (m_State != Outside) ParameterEnd();
  } else if (name == kSettings || name == kDriverDefaults) {
    m_State = Outside;
    Pop();
  } else if (name == kActiveDataSources || name == kNetworkLayer || name == kDataBase) {
    if (m_State != Outside) Pop();
  } else if (name == kTrace) {
    TraceEnd();
  }
}

void CfgXmlParser::CharacterDataHandler(const unsigned short* text, int length) {
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
    } else if (a->Name == kClassID) {
      ReaderText::Assign(a->Value, m_Value);
    }
  }
  if (native) m_TracesNode->value().push_back(Field(kClassIDField, m_Value));
}

void CfgXmlParser::TraceStart(const OrvXmlAttributeValue* attributes) {
  // A pending name means the enclosing "Trace" holds traces: it is a group and gets its node,
  // always directly below the Traces node.
  if (!m_Name.empty()) {
    m_NodeStack.push_back(&*m_TracesNode->ch_push_back(Node(m_Name)));
  }
  bool active = false;
  for (const OrvXmlAttributeValue* a = attributes; a->Name != nullptr; ++a) {
    if (a->Name == kName) {
      ReaderText::Assign(a->Value, m_Name);
    } else if (a->Name == kActive) {
      active = !(a->Value == kNo);
    }
  }
  // The stack never runs empty: the constructor's entry is never popped.
  m_ActiveStack.push_back(active && m_ActiveStack.back());
}

void CfgXmlParser::TraceEnd() {
  if (m_Name.empty()) {
    Pop();
  } else {
    Top().value().push_back(Field(m_Name, static_cast<bool>(m_ActiveStack.back())));
    m_Name.clear();
  }
  if (m_ActiveStack.size() > 1) m_ActiveStack.pop_back();
}

void CfgXmlParser::ParameterEnd() {
  if (m_State == InSettingsParameter || m_State == InDefaultsParameter) {
    Top().value().push_back(MakeField(m_Name, m_Text));
  } else if (m_State == InModeParameter) {
    // The mode section only changes existing fields of the same type; anything else is
    // ignored, which the checks below decide without raising.
    Node& drivers = m_DBDriversNode->value();
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
  if (m_Mode == Initialization::Library) {
    if (!m_Name.empty() && !process.PlatformSupported(m_Name)) return;
    (*m_PlatformLocales)[process.Name()].try_emplace(m_LocaleId, descriptor);
  } else {
    for (const std::string& platform : process.OSList(m_Name)) {
      (*m_PlatformLocales)[platform].try_emplace(m_LocaleId, descriptor);
    }
  }
}
