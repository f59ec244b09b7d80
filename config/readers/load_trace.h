// LoadTrace: the library's side of a LoadObserver while one start-up runs. Internal.
//
// The start-up makes one LoadTrace when it is given an observer and hands it to every reader
// and step; a reader or step reports through it only when it has one, so without an observer
// nothing here runs. The trace:
//  - forwards files and diagnostics to the observer, with stable storage for the paths;
//  - remembers where each field value came from (ValueOrigin chains), cheaply: a field set by
//    an element gets an origin of its own; the fields every database copies from the
//    defaults share the defaults' origins through one template per defaults state. When the
//    observer does not ask for values, no chain is kept (an origin that only one field uses
//    is updated in place) and a database's own parameters are recorded only for the fields
//    the start-up reads after the readers (SetLaterReads), so memory stays bounded by the
//    configuration, not by the files' length;
//  - remembers where each node was declared, for diagnostics about a node as a whole;
//  - holds the cause of the error being raised, so that the code that catches it (and knows
//    what the error leads to) can report cause and consequence as one diagnostic.
#pragma once

#include <cstdint>
#include <deque>
#include <exception>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "qr_config/config/model/config_manager_types.h"
#include "qr_config/config/model/tree.h"
#include "qr_config/config/readers/load_observer.h"

class LoadTrace {
 public:
  using Field = ConfigManagerTypes::Field;
  using Node = ConfigManagerTypes::Node;
  // The origins of a database's first fields, in order, as the data-access reader copies
  // them from its defaults and the setup file.
  using Template = std::vector<const ValueOrigin*>;

  explicit LoadTrace(LoadObserver& observer);
  ~LoadTrace();
  LoadTrace(const LoadTrace&) = delete;
  LoadTrace& operator=(const LoadTrace&) = delete;

  bool KeepGoing() const { return m_KeepGoing; }
  bool WantsValues() const { return m_Values; }
  bool WantsOnDemandFiles() const { return m_OnDemandFiles; }

  // A copy of `text` that lives as long as the trace (paths, section names).
  std::string_view Keep(std::string_view text);

  void FileRead(FileRole role, std::string_view path);
  void FileSkipped(FileRole role, std::string_view path, std::string_view reason);

  // Reports one diagnostic.
  void Report(DiagnosticSeverity severity, DiagnosticKind kind, SourceLocation where,
              std::string_view message, std::string_view subject = {}, std::int32_t code = 0,
              const std::vector<std::string>* candidates = nullptr);

  // --- Origins of values.
  // The names of the fields the start-up reads after the readers have run; a database's own
  // value of another name needs no origin unless the observer wants values.
  void SetLaterReads(std::vector<std::string> names);
  bool Tracks(const std::string& name) const;
  // Records that `field`, a field of `node`, was just set to `text` at `where` (kept or static
  // file text) by `source`: with values wanted, a new origin that replaces the field's
  // previous one; without, the field's own origin updated in place when no other field or
  // template shares it.
  void SetValue(const Node& node, const Field& field, SourceLocation where, std::string_view source,
                std::string_view text);
  // A new origin, not yet given to any field (for templates); `where.File` must be kept
  // (Keep) or static. `replaced` is kept only when the observer wants values.
  const ValueOrigin* NewOrigin(SourceLocation where, std::string_view source, std::string_view text,
                               const ValueOrigin* replaced = nullptr);
  // Records that `field`, a field of `node`, holds the value that `origin` set (an origin
  // shared with another field, or null).
  void SetOrigin(const Node& node, const Field& field, const ValueOrigin* origin);
  // The origin of `field`, a field of `node`; null when unknown.
  const ValueOrigin* OriginOf(const Node& node, const Field& field) const;
  // The origin of the first field named `name` in `node`; null when there is none.
  const ValueOrigin* OriginOf(const Node& node, const std::string& name) const;
  // Gives `node` the template of its first fields.
  void SetTemplate(const Node& node, const Template* fields);
  // A template that lives as long as the trace.
  const Template* KeepTemplate(Template fields);
  // Forgets what is known of `node` and its fields, or of the whole subtree, before they are
  // destroyed (so that a later object at the same address is not taken for them).
  void Forget(const Node& node);
  void ForgetSubtree(const tree_node<Node>& node);

  // "\"1521\" from corvane.dsf:8 (Defaults)": a value and where it was set, for messages
  // (the file by its last name only); "a built-in value" when `origin` is null.
  static std::string Describe(const ValueOrigin* origin);

  // --- Where nodes were declared.
  void SetNodeLocation(const Node& node, SourceLocation where);
  SourceLocation NodeLocation(const Node& node) const;

  // --- The cause of the error being raised.
  struct Cause {
    DiagnosticKind Kind = DiagnosticKind::LoadFailure;
    SourceLocation Where;
    std::string Message;
    std::string Subject;
    const std::vector<std::string>* Candidates = nullptr;
  };
  void SetCause(DiagnosticKind kind, SourceLocation where, std::string message,
                std::string subject = {});
  void ClearCause() { m_HasCause = false; }
  bool HasCause() const { return m_HasCause; }
  const Cause& CurrentCause() const { return m_Cause; }

  // Reports the error being handled (the current exception) as one diagnostic: the cause
  // when one was set (else the error's own text, at `fallback`), followed by `consequence`.
  // Clears the cause.
  void ReportFailure(const std::exception& error, DiagnosticSeverity severity,
                     SourceLocation fallback, std::string_view consequence);

  // Marks the error being thrown as reported already, so that the code that catches it next
  // does not report it again; ConsumeReported tells and clears the mark.
  void MarkReported() { m_Reported = true; }
  bool ConsumeReported() {
    const bool reported = m_Reported;
    m_Reported = false;
    return reported;
  }

  // --- Keep-going support: the first failure of a step, rethrown when the start-up ends.
  // Records the exception being handled when it is the first.
  void RecordFailure(std::exception_ptr error);
  std::exception_ptr FirstFailure() const { return m_FirstFailure; }

  // Reports every field of the tree below (and including) `root`, with its origin, when the
  // observer wants values.
  void ReportValues(const tree_node<Node>& root);

 private:
  // Every ValueOrigin handed out is one of these.
  struct OriginRecord : ValueOrigin {
    std::string Storage;  // what Text views
    bool Given = false;   // some field holds it
    bool Shared = false;  // more than one field, or a template, holds it
  };
  static OriginRecord* Record(const ValueOrigin* origin) {
    return static_cast<OriginRecord*>(const_cast<ValueOrigin*>(origin));
  }
  struct NodeRecord {
    SourceLocation Where;
    const Template* Fields = nullptr;
  };

  void ReportNode(const tree_node<Node>& node, std::string& path);

  LoadObserver& m_Observer;
  bool m_KeepGoing;
  bool m_Values;
  bool m_OnDemandFiles;
  std::unordered_set<std::string> m_Texts;
  std::unordered_set<std::string> m_LaterReads;
  std::deque<OriginRecord> m_Origins;
  std::deque<Template> m_Templates;
  struct FieldRecord {
    const Node* Owner;
    const ValueOrigin* Origin;
  };
  std::unordered_map<const Field*, FieldRecord> m_FieldOrigins;
  std::unordered_map<const Node*, NodeRecord> m_Nodes;
  Cause m_Cause;
  bool m_HasCause = false;
  bool m_Reported = false;
  std::exception_ptr m_FirstFailure;
};
