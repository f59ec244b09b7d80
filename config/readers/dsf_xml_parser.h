// Reader of a driver's data-access file.
#pragma once

#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "qr_config/config/model/tree.h"
#include "qr_config/config/readers/reader_frame.h"
#include "qr_config/config/readers/setup_xml_parser.h"
#include "qr_config/platform/regular_expression.h"

// Reads one data-access file: appends one node per accepted "DataBase" to the driver's node
// and records the database's name and its aliases in the driver's database-name table.
//
// A "DataBase" is accepted when its "Active" attribute is present and is not "No", when its
// "Platform" list (if any) names a platform the process supports, and, when active-database
// patterns are set, when its whole name matches one of them. Its node holds, in this order:
// the fields of the defaults as they stand at its start tag, "Configuration File" (the path
// text of the file read), "Directory" and one String field per version of the setup reader,
// then what its "Parameter", "Library" and "Libraries" elements set. A "Parameter" or
// "Library" that names an existing field updates the first field of that name; otherwise it
// adds a field. Parameter values are typed Bool, Long or String by their text. A "Libraries"
// list sets "Library" to "Undefined" and, inside a database, adds a child node "Libraries"
// with one "Library" field per listed library that applies (none when none applies).
// "Defaults" sections accumulate and reach only the databases declared after them.
// Rejected databases, elements for other platforms and out-of-place elements are skipped
// with everything inside them. Names and the value "No" are compared exactly.
//
// The end tag of "Defaults" closes the section: elements after it that stand outside any
// "DataBase" are skipped like every other out-of-place element.
//
// Errors: QRError 1 when a value's type differs from the existing field it updates; QRError
// 283 with the pattern when an active-database pattern that is tried does not compile, or
// when the regular-expression engine gives up matching a name (its limits); parse failures
// as 279 to 282 with the file's path (ReaderFrame::Parse). What was appended before an error
// stays in the tree and the table.
//
// Diagnostics (with a trace): every database skipped and why (no "Active", "No", a case
// variant of "No", the platform, the active-database patterns), an active-database pattern
// that can never compile, out-of-place elements, an alias or database name that an earlier
// one took, the cause of a type mismatch, and the origin of every field it sets.
//
// Cost: no allocation per event beyond the nodes, fields and table entries it creates; each
// active-database pattern is compiled when it is first tried, once. Every database node made
// from the same defaults starts with the same fields: the reader builds them once (the
// prototype, with an index of their names) and copies them into one block per node, so that
// neither the copy nor a "Parameter" or "Library" of the database searches the node's
// fields from the front.
class DsfXmlParser : public ReaderFrame {
 public:
  using TreeNode = tree_node<Node>;

  // The states of the state stack.
  enum State : std::int32_t {
    Skip = 0,         // inside something ignored
    InDefaults = 1,   // inside "Defaults"
    InDatabase = 2,   // directly inside an accepted "DataBase"
    InAlias = 3,      // inside an accepted "Alias": text is collected
    InLibraries = 4,  // inside a "Libraries" that counts
    InText = 5,       // inside a "Library" or "Parameter" that counts: text is collected
  };

  // Takes the "Drivers defaults" node (only read, here), the driver's node (parent of every
  // database node made), the driver's database-name table and the setup reader that found
  // the file (its Directory() and Versions() are read during Parse). The last three must
  // outlive the reader. The defaults start as a merge of the "Drivers defaults" fields
  // (Node::Update): throws QRError 261 when one of them is neither Bool, Long nor String,
  // and QRError 1 when two of them share a name with different types.
  // With a trace, the merge reports the origin of each default and the cause of a failure.
  DsfXmlParser(const TreeNode& driversDefaults, TreeNode& driver,
               std::map<std::string, std::string>& nameTable, const SetupXmlParser& setup,
               LoadTrace* trace = nullptr);
  ~DsfXmlParser() override;

  // The first fields of some names in every database node that readers made: what
  // Node::Find gives on each node once its reader has done with it. A caller that reads those
  // fields of every database later looks them up here instead of walking each node again.
  class DatabaseFields {
   public:
    // The names whose first fields are recorded, in the order Of gives them.
    explicit DatabaseFields(std::vector<const std::string*> names) : m_Names(std::move(names)) {}
    // The first field of each name in `node` (null for a name it lacks), or null when no
    // reader recorded the node. Cheapest when asked in the order the nodes were made.
    Field* const* Of(const TreeNode& node);

   private:
    friend class DsfXmlParser;
    std::vector<const std::string*> m_Names;
    std::vector<const TreeNode*> m_Nodes;
    std::vector<Field*> m_Fields;          // m_Names.size() per node of m_Nodes
    std::size_t m_Next = 0;                // where the next question is expected
    std::vector<std::size_t> m_ByAddress;  // positions in m_Nodes by node address, when needed
  };

  // Records the database nodes this reader makes in `table` (null: none), each once the
  // reader can no longer change its fields: when the next database or a "Defaults" section
  // starts, or the file ends. The node being filled when a parse fails is not recorded.
  void RecordDatabaseFields(DatabaseFields* table) {
    m_Table = table;
    m_PrototypeValid = false;  // its positions of the names are made with it
  }

  // Restricts loading to databases whose whole name matches one of `patterns` (regular
  // expressions, tried in order until one matches); an empty list lifts the restriction.
  // Each pattern is compiled when it is first tried, so an invalid pattern behind one that
  // matches every database is never compiled. With a trace, `places` (parallel to
  // `patterns`, or empty) tells where each pattern was written.
  void SetActiveDatabases(const std::vector<std::string>& patterns,
                          const std::vector<SourceLocation>& places = {});

  // The elements and attributes this reader acts on.
  static const std::vector<ElementVocabulary>& Vocabulary();

 protected:
  // Takes the path text for the "Configuration File" fields.
  void BeginParse(const Poco::Path& file) override;
  // With a trace: reports the active-database patterns that were never tried and cannot
  // compile.
  void EndParse() override;

  void StartElementHandler(const unsigned short* name,
                           const OrvXmlAttributeValue* attributes) override;
  void EndElementHandler(const unsigned short* name) override;
  void CharacterDataHandler(const unsigned short* text, int length) override;

 private:
  std::int32_t Top() const { return m_States.back(); }
  // Pushes a state; with a trace, `quiet` marks a Skip that is by design (a rejected
  // database, an element for another platform), inside which nothing is out of place.
  void Push(std::int32_t state, bool quiet = false);
  std::int32_t Pop();
  bool Accept(const OrvXmlAttributeValue* attributes);
  bool MatchesActivePattern();
  void AddDatabase();
  bool PlatformSupported(const unsigned short* list);
  bool PlatformCheck(const OrvXmlAttributeValue* attributes);
  void SetLibrary(const std::string& value, std::string_view source);
  void SetParameter();
  // The first field of `node` named `name`, as Node::Find finds it, or null.
  Field* FirstField(Node& node, const std::string& name);
  // The first of m_AddedFields named `name`, or null.
  Field* AddedField(const std::string& name) const;
  // Records the database node made last in m_Table, unless it is or there is none.
  void RecordDatabase();
  // Appends a field named `name` holding `value` (a text, an integer or a boolean) to the
  // current node, which has no field of that name.
  template <typename T>
  void AddField(const std::string& name, const T& value);
  void BuildPrototype();
  // Diagnostics helpers, used with a trace only.
  void TraceMerge(const Node& driversDefaults);
  void TraceOutOfPlace(const char* element);
  void TraceSkipped(const char* reason, bool warning);
  void SetMismatchCause(const Field& field, const std::string& name, const std::string& text);
  void TraceSet(Field* updated, std::string_view source, const std::string& text);
  std::string Where() const;

  std::deque<std::int32_t> m_States;  // back() is the top; the bottom Skip is never popped
  std::string m_FileName;
  // The active-database patterns and their matchers, same order; a matcher is made when its
  // pattern is first tried (matchers can be neither copied nor moved).
  std::vector<std::string> m_ActivePatterns;
  std::vector<std::unique_ptr<RegularExpression::Matcher>> m_ActiveMatchers;
  std::vector<SourceLocation> m_PatternPlaces;
  TreeNode& m_Driver;
  std::map<std::string, std::string>& m_NameTable;
  const SetupXmlParser& m_Setup;
  Node m_Defaults;
  Node m_Libraries;
  TreeNode* m_CurrentTreeNode = nullptr;  // the database accepted last
  Node* m_CurrentNode = nullptr;          // m_Defaults or the database accepted last
  std::string m_ParameterName;
  std::string m_Text;
  // The first fields of every database node made from the current defaults, in order: the
  // defaults, then "Configuration File", "Directory" and the versions, each added by the
  // push_back rule (which ones were is kept for the trace). Rebuilt when a database is
  // accepted after a "Parameter" or "Library" acted on the defaults.
  Node m_Prototype;
  bool m_PrototypeValid = false;
  bool m_FileAdded = false;
  bool m_DirectoryAdded = false;
  std::vector<bool> m_VersionsAdded;
  // Each name of the prototype, with the position of its first field there.
  std::unordered_map<std::string_view, std::size_t> m_PrototypeNames;
  // The node of the database accepted last, its copies of the prototype's fields in order,
  // and the fields it added since. Its fields are these, in this order: the reader appends
  // and never removes.
  Node* m_DatabaseNode = nullptr;
  std::vector<Field*> m_DatabaseFields;
  std::vector<Field*> m_AddedFields;
  // The bytes the prototype's long texts take in a node's block.
  std::size_t m_PrototypeBytes = 0;
  // The bytes of block the long texts of m_AddedFields took.
  std::size_t m_AddedBytes = 0;
  DatabaseFields* m_Table = nullptr;
  // The position in the prototype of the first field of each name m_Table records, or
  // kNoPosition; made with the prototype.
  static constexpr std::size_t kNoPosition = static_cast<std::size_t>(-1);
  std::vector<std::size_t> m_RecordedPositions;
  bool m_DatabaseRecorded = true;  // m_DatabaseNode is in m_Table, or need not be
  // Scratch texts reused across events.
  std::string m_DatabaseName;
  std::string m_PlatformList;
  std::string m_PlatformName;
  // Diagnostics state, used with a trace only.
  std::vector<bool> m_Quiet;  // parallel to m_States: pushed by design
  int m_QuietDepth = 0;
  const std::vector<const ValueOrigin*>* m_Template = nullptr;  // of the current defaults
  std::string m_Active;  // the "Active" value of the "DataBase" being accepted
  bool m_HasActive = false;
};
