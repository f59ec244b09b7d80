#include "qr_config/config/readers/reader_frame.h"
#include "qr_config/config/readers/diagnostic_text.h"

#include <Poco/File.h>
#include <Poco/String.h>

#include <cstddef>

#include "qr_config/config/readers/load_trace.h"
#include "qr_config/platform/qr_error.h"

namespace ReaderText {

void Assign(const unsigned short* text, std::string& out) {
  out.clear();
  if (text == nullptr) return;
  std::size_t length = 0;
  while (text[length] != 0) ++length;
  AppendUtf16AsUtf8(text, length, out);
}

void Append(const unsigned short* text, int length, std::string& out) {
  if (text == nullptr || length <= 0) return;
  AppendUtf16AsUtf8(text, static_cast<std::size_t>(length), out);
}

void AppendCut(const unsigned short* text, int length, std::string& out) {
  if (text == nullptr || length <= 0) return;
  std::size_t kept = static_cast<std::size_t>(length);
  for (std::size_t i = kept; i > 0; --i) {
    if (text[i - 1] == u'\n' || text[i - 1] == u'\r') {
      kept = i - 1;
      break;
    }
  }
  AppendUtf16AsUtf8(text, kept, out);
}

}  // namespace ReaderText

ElementVocabulary VocabularyEntry(const std::string& element,
                                  std::initializer_list<const ucs2string*> attributes) {
  ElementVocabulary entry{element, {}, {}};
  for (const ucs2string* attribute : attributes) {
    entry.Attributes.emplace_back();
    AppendUtf16AsUtf8(attribute->data(), attribute->size(), entry.Attributes.back());
  }
  return entry;
}

ElementVocabulary VocabularyEntry(const ucs2string& element,
                                  std::initializer_list<const ucs2string*> attributes) {
  std::string name;
  AppendUtf16AsUtf8(element.data(), element.size(), name);
  return VocabularyEntry(name, attributes);
}

ReaderFrame::~ReaderFrame() = default;

void ReaderFrame::BeginParse(const Poco::Path&) {}

void ReaderFrame::EndParse() {}

void ReaderFrame::Parse(const Poco::Path& file) {
  BeginParse(file);
  if (m_Trace != nullptr) {
    m_TracedPath = m_Trace->Keep(file.toString());
    m_Open.clear();
    m_RawText.clear();
    m_Trace->FileRead(m_Role, m_TracedPath);
  }
  try {
    XMLParser::Parse(file);
  } catch (const QRError& error) {
    std::int32_t code = 0;
    switch (error.Code()) {
      case QRErrorCode::ParseCannotRead:
        code = m_Codes.CannotRead;
        break;
      case QRErrorCode::ParseNotWellFormed:
        code = m_Codes.NotWellFormed;
        break;
      case QRErrorCode::ParseEncoding:
        code = m_Codes.Encoding;
        break;
      case QRErrorCode::ParseRefused:
        code = m_Codes.Refused;
        break;
      default:
        throw;
    }
    if (m_Trace != nullptr) SetParseCause(file);
    ThrowQRError(code, file.toString());
  }
  EndParse();
}

ReaderFrame::Value ReaderFrame::Classify(const std::string& text) {
  bool isBoolean = false;
  bool booleanValue = false;
  bool isInteger = false;
  std::int32_t integerValue = 0;
  ParseParameter(text, isBoolean, booleanValue, isInteger, integerValue);
  Value value;
  if (isBoolean) {
    value.Type = Value::Bool;
    value.Boolean = booleanValue;
  } else if (isInteger) {
    value.Type = Value::Long;
    value.Integer = integerValue;
  }
  return value;
}

ReaderFrame::Field ReaderFrame::MakeField(const std::string& name, const std::string& text) {
  const Value value = Classify(text);
  switch (value.Type) {
    case Value::Bool:
      return Field(name, value.Boolean);
    case Value::Long:
      return Field(name, value.Integer);
    case Value::String:
      break;
  }
  return Field(name, text);
}

void ReaderFrame::StoreValue(Field& field, const std::string& text) {
  const Value value = Classify(text);
  switch (value.Type) {
    case Value::Bool:
      field.Update(value.Boolean);
      return;
    case Value::Long:
      field.Update(value.Integer);
      return;
    case Value::String:
      field.Update(text);
      return;
  }
}

// --- Diagnostics.

namespace {

std::string Trim(const std::string& text) {
  const auto first = text.find_first_not_of(" \t\r\n");
  if (first == std::string::npos) return std::string();
  const auto last = text.find_last_not_of(" \t\r\n");
  return text.substr(first, last - first + 1);
}

const char* TypeWord(int kind) {
  switch (kind) {
    case 0:
      return "boolean";
    case 1:
      return "integer";
    default:
      return "text";
  }
}

}  // namespace

void ReaderFrame::SetParseCause(const Poco::Path& file) {
  const XmlDiagnostic& failure = LastError();
  const std::string role = FileRoleName(m_Role);
  SourceLocation where{m_TracedPath, failure.Line, failure.Column};
  switch (failure.Code) {
    case QRErrorCode::ParseCannotRead:
      if (!Poco::File(file).exists()) {
        m_Trace->SetCause(DiagnosticKind::MissingFile, where,
                          "The " + role + " \"" + file.toString() + "\" does not exist.");
      } else {
        m_Trace->SetCause(DiagnosticKind::XmlError, where,
                          "The " + role + " cannot be read (" + failure.Message + ").");
      }
      return;
    case QRErrorCode::ParseNotWellFormed:
      m_Trace->SetCause(DiagnosticKind::XmlError, where,
                        "The " + role + " is not well-formed XML (" + failure.Message + ").");
      return;
    case QRErrorCode::ParseEncoding:
      m_Trace->SetCause(DiagnosticKind::XmlError, where,
                        "The " + role + " has an encoding problem (" + failure.Message + ").");
      return;
    default:
      m_Trace->SetCause(DiagnosticKind::XmlError, where,
                        "The XML parser refuses the " + role + " (" + failure.Message + ").");
      return;
  }
}

void ReaderFrame::ObserveStart(const unsigned short* name, const OrvXmlAttributeValue* attributes) {
  ReaderText::Assign(name, m_Scratch);
  const bool root = m_Open.empty();
  m_Open.push_back({m_Scratch, CurrentLine()});
  m_RawText.clear();
  if (root) return;

  const std::string role = FileRoleName(m_Role);
  const ElementVocabulary* known = nullptr;
  for (const ElementVocabulary& element : m_Vocabulary) {
    if (element.Element == m_Scratch) known = &element;
  }
  if (known == nullptr) {
    std::vector<std::string> candidates;
    std::string variant;
    for (const ElementVocabulary& element : m_Vocabulary) {
      candidates.push_back(element.Element);
      if (Poco::icompare(element.Element, m_Scratch) == 0) variant = element.Element;
    }
    const std::string message =
        variant.empty() ? "The reader of the " + role + " does not know the element <" + m_Scratch +
                              "> and passes over it."
                        : "The element <" + m_Scratch + "> is not <" + variant +
                              ">: names are case-sensitive, so the reader passes over it.";
    m_Trace->Report(DiagnosticSeverity::Warning,
                    variant.empty() ? DiagnosticKind::UnknownElement : DiagnosticKind::CaseVariant,
                    Here(), message, m_Scratch, 0, &candidates);
    return;
  }
  std::string attribute;
  for (const OrvXmlAttributeValue* a = attributes; a->Name != nullptr; ++a) {
    ReaderText::Assign(a->Name, attribute);
    bool read = false;
    for (const std::string& candidate : known->Attributes) read = read || candidate == attribute;
    if (read) continue;
    std::string message = "The element <" + known->Element + "> has no attribute \"" + attribute +
                          "\" that the reader reads: it is ignored";
    message += known->Attributes.empty() ? " (the element reads no attribute)." : ".";
    m_Trace->Report(DiagnosticSeverity::Warning, DiagnosticKind::UnknownAttribute, Here(), message,
                    attribute, 0, &known->Attributes);
  }
}

void ReaderFrame::ObserveEnd() noexcept {
  if (!m_Open.empty()) m_Open.pop_back();
}

void ReaderFrame::ObserveText(const unsigned short* text, int length) {
  ReaderText::Append(text, length, m_RawText);
}

SourceLocation ReaderFrame::Here() const {
  return SourceLocation{m_TracedPath, CurrentLine(), 0};
}

SourceLocation ReaderFrame::ElementStart() const {
  return SourceLocation{m_TracedPath, m_Open.empty() ? CurrentLine() : m_Open.back().Line, 0};
}

const std::string& ReaderFrame::ParentName() const {
  static const std::string kNone;
  return m_Open.size() < 2 ? kNone : m_Open[m_Open.size() - 2].Name;
}

void ReaderFrame::TraceLayout(const std::string& kept, const std::string& what) {
  const std::string written = Trim(m_RawText);
  if (m_RawText.find('\n') == std::string::npos || written.empty() || kept == written) return;
  m_Trace->Report(DiagnosticSeverity::Warning, DiagnosticKind::ValueLayout, ElementStart(),
                  "The value \"" + written + "\" of " + what +
                      " does not stand on the line of its start tag: the reader takes \"" + kept +
                      "\" instead.");
}

void ReaderFrame::TraceClassification(const std::string& text, const std::string& what) {
  if (Classify(text).Type != Value::String) return;
  const std::string trimmed = Trim(text);
  if (trimmed != text && !trimmed.empty()) {
    const Value value = Classify(trimmed);
    if (value.Type != Value::String) {
      m_Trace->Report(DiagnosticSeverity::Warning, DiagnosticKind::ValueLayout, ElementStart(),
                      "The value \"" + text + "\" of " + what +
                          " has blanks around it: it is the text \"" + text + "\", not the " +
                          TypeWord(value.Type) + " " + trimmed + ".");
      return;
    }
  }
  m_IntegerMatcher.reset(text);
  if (!text.empty() && m_IntegerMatcher.matches()) {
    m_Trace->Report(DiagnosticSeverity::Warning, DiagnosticKind::ValueType, ElementStart(),
                    "The value " + text + " of " + what +
                        " does not fit a 32-bit integer (-2147483648 to 2147483647): it is "
                        "taken as the text \"" +
                        text + "\".");
  }
}

void ReaderFrame::TraceValue(const Node& node, const Field& field, std::string_view source,
                             std::string_view text) {
  m_Trace->SetValue(node, field, ElementStart(), source, text);
}
