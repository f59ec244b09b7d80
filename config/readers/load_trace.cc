#include "qr_config/config/readers/load_trace.h"

#include <Poco/Exception.h>

#include <utility>

#include "qr_config/platform/qr_error.h"

LoadTrace::LoadTrace(LoadObserver& observer)
    : m_Observer(observer),
      m_KeepGoing(observer.WantsKeepGoing()),
      m_Values(observer.WantsValues()),
      m_OnDemandFiles(observer.WantsOnDemandFiles()) {}

LoadTrace::~LoadTrace() = default;

std::string_view LoadTrace::Keep(std::string_view text) {
  return *m_Texts.emplace(text).first;
}

void LoadTrace::FileRead(FileRole role, std::string_view path) {
  LoadedFile file;
  file.Role = role;
  file.Path = path;
  m_Observer.OnFile(file);
}

void LoadTrace::FileSkipped(FileRole role, std::string_view path, std::string_view reason) {
  LoadedFile file;
  file.Role = role;
  file.Path = path;
  file.Read = false;
  file.Reason = reason;
  m_Observer.OnFile(file);
}

void LoadTrace::Report(DiagnosticSeverity severity, DiagnosticKind kind, SourceLocation where,
                       std::string_view message, std::string_view subject, std::int32_t code,
                       const std::vector<std::string>* candidates) {
  LoadDiagnostic diagnostic;
  diagnostic.Severity = severity;
  diagnostic.Kind = kind;
  diagnostic.Where = where;
  diagnostic.Message = message;
  diagnostic.Subject = subject;
  diagnostic.Candidates = candidates;
  diagnostic.Code = code;
  m_Observer.OnDiagnostic(diagnostic);
}

void LoadTrace::SetLaterReads(std::vector<std::string> names) {
  m_LaterReads.clear();
  for (std::string& name : names) m_LaterReads.insert(std::move(name));
}

bool LoadTrace::Tracks(const std::string& name) const {
  return m_Values || m_LaterReads.count(name) > 0;
}

const ValueOrigin* LoadTrace::NewOrigin(SourceLocation where, std::string_view source,
                                        std::string_view text, const ValueOrigin* replaced) {
  OriginRecord& record = m_Origins.emplace_back();
  record.Storage.assign(text.data(), text.size());
  record.Where = where;
  record.Source = source;
  record.Text = record.Storage;
  record.Replaced = m_Values ? replaced : nullptr;
  return &record;
}

void LoadTrace::SetValue(const Node& node, const Field& field, SourceLocation where,
                         std::string_view source, std::string_view text) {
  const ValueOrigin* previous = OriginOf(node, field);
  if (!m_Values && previous != nullptr) {
    auto explicitOrigin = m_FieldOrigins.find(&field);
    OriginRecord* record = Record(previous);
    if (explicitOrigin != m_FieldOrigins.end() && explicitOrigin->second.Origin == previous &&
        !record->Shared) {
      record->Storage.assign(text.data(), text.size());
      record->Where = where;
      record->Source = source;
      record->Text = record->Storage;
      return;
    }
  }
  SetOrigin(node, field, NewOrigin(where, source, text, previous));
}

void LoadTrace::SetOrigin(const Node& node, const Field& field, const ValueOrigin* origin) {
  if (origin != nullptr) {
    OriginRecord* record = Record(origin);
    if (record->Given) record->Shared = true;
    record->Given = true;
  }
  m_FieldOrigins[&field] = FieldRecord{&node, origin};
}

const ValueOrigin* LoadTrace::OriginOf(const Node& node, const Field& field) const {
  auto explicitOrigin = m_FieldOrigins.find(&field);
  if (explicitOrigin != m_FieldOrigins.end() && explicitOrigin->second.Owner == &node)
    return explicitOrigin->second.Origin;
  auto record = m_Nodes.find(&node);
  if (record == m_Nodes.end() || record->second.Fields == nullptr) return nullptr;
  const Template& fields = *record->second.Fields;
  std::size_t index = 0;
  for (const Field& candidate : node) {
    if (index >= fields.size()) break;
    if (&candidate == &field) return fields[index];
    ++index;
  }
  return nullptr;
}

const ValueOrigin* LoadTrace::OriginOf(const Node& node, const std::string& name) const {
  for (const Field& field : node) {
    if (field.Name() == name) return OriginOf(node, field);
  }
  return nullptr;
}

void LoadTrace::SetTemplate(const Node& node, const Template* fields) {
  m_Nodes[&node].Fields = fields;
}

const LoadTrace::Template* LoadTrace::KeepTemplate(Template fields) {
  for (const ValueOrigin* origin : fields) {
    if (origin != nullptr) Record(origin)->Shared = true;
  }
  return &m_Templates.emplace_back(std::move(fields));
}

void LoadTrace::Forget(const Node& node) {
  for (const Field& field : node) m_FieldOrigins.erase(&field);
  m_Nodes.erase(&node);
}

void LoadTrace::ForgetSubtree(const tree_node<Node>& node) {
  Forget(node.value());
  for (auto child = node.ch_begin(); child != node.ch_end(); ++child) ForgetSubtree(*child);
}

std::string LoadTrace::Describe(const ValueOrigin* origin) {
  if (origin == nullptr) return "a value of unknown origin";
  std::string text = "\"" + std::string(origin->Text) + "\"";
  std::string_view file = origin->Where.File;
  if (!file.empty()) {
    const auto slash = file.find_last_of("/\\");
    if (slash != std::string_view::npos) file.remove_prefix(slash + 1);
    text += " from ";
    text.append(file.data(), file.size());
    if (origin->Where.Line != 0) text += ":" + std::to_string(origin->Where.Line);
    text += " (" + std::string(origin->Source) + ")";
  } else {
    text += " (" + std::string(origin->Source) + ")";
  }
  return text;
}

void LoadTrace::SetNodeLocation(const Node& node, SourceLocation where) {
  m_Nodes[&node].Where = where;
}

SourceLocation LoadTrace::NodeLocation(const Node& node) const {
  auto record = m_Nodes.find(&node);
  return record == m_Nodes.end() ? SourceLocation{} : record->second.Where;
}

void LoadTrace::SetCause(DiagnosticKind kind, SourceLocation where, std::string message,
                         std::string subject) {
  m_Cause.Kind = kind;
  m_Cause.Where = where;
  m_Cause.Message = std::move(message);
  m_Cause.Subject = std::move(subject);
  m_Cause.Candidates = nullptr;
  m_HasCause = true;
}

void LoadTrace::ReportFailure(const std::exception& error, DiagnosticSeverity severity,
                              SourceLocation fallback, std::string_view consequence) {
  const auto* qrError = dynamic_cast<const Quorin::QRError*>(&error);
  const std::int32_t code = qrError != nullptr ? qrError->Code() : 0;
  std::string message;
  DiagnosticKind kind = DiagnosticKind::LoadFailure;
  SourceLocation where = fallback;
  std::string subject;
  const std::vector<std::string>* candidates = nullptr;
  if (m_HasCause) {
    kind = m_Cause.Kind;
    where = m_Cause.Where;
    message = m_Cause.Message;
    subject = m_Cause.Subject;
    candidates = m_Cause.Candidates;
  } else {
    const auto* poco = dynamic_cast<const Poco::Exception*>(&error);
    message = poco != nullptr ? poco->displayText() : std::string(error.what());
    if (!message.empty() && message.back() != '.') message += '.';
  }
  if (!consequence.empty()) {
    message += ' ';
    message.append(consequence.data(), consequence.size());
  }
  m_HasCause = false;
  Report(severity, kind, where, message, subject, code, candidates);
}

void LoadTrace::RecordFailure(std::exception_ptr error) {
  if (!m_FirstFailure) m_FirstFailure = std::move(error);
}

void LoadTrace::ReportValues(const tree_node<Node>& root) {
  if (!m_Values) return;
  std::string path;
  ReportNode(root, path);
}

void LoadTrace::ReportNode(const tree_node<Node>& node, std::string& path) {
  const std::size_t length = path.size();
  path += '\\';
  path += node.value().Name();
  for (const Field& field : node.value()) {
    LoadedValue value;
    value.NodePath = path;
    value.Node = &node.value();
    value.Field = &field;
    value.Origin = OriginOf(node.value(), field);
    m_Observer.OnValue(value);
  }
  for (auto child = node.ch_begin(); child != node.ch_end(); ++child) ReportNode(*child, path);
  path.resize(length);
}
