// Reader of a driver's data-access file.
#pragma once

#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <string>
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
// 283 with the pattern when the regular-expression engine gives up matching a name (its
// backtracking limit); parse failures as 279 to 282 with the file's path
// (ReaderFrame::Parse). What was appended before an error stays in the tree and the table.
//
// Cost: no allocation per event beyond the nodes, fields and table entries it creates; the
// active-database patterns are compiled once, by SetActiveDatabases.
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
  DsfXmlParser(const TreeNode& driversDefaults, TreeNode& driver,
               std::map<std::string, std::string>& nameTable, const SetupXmlParser& setup);
  ~DsfXmlParser() override;

  // Restricts loading to databases whose whole name matches one of `patterns` (regular
  // expressions, tried in order); an empty list lifts the restriction. Each pattern is
  // compiled here, once. Throws QRError 283 with the pattern when one is not a valid
  // regular expression; the previous patterns then stay in force.
  void SetActiveDatabases(const std::vector<std::string>& patterns);

 protected:
  // Takes the path text for the "Configuration File" fields.
  void BeginParse(const Poco::Path& file) override;

  void StartElementHandler(const unsigned short* name,
                           const OrvXmlAttributeValue* attributes) override;
  void EndElementHandler(const unsigned short* name) override;
  void CharacterDataHandler(const unsigned short* text, int length) override;

 private:
  std::int32_t Top() const { return m_States.back(); }
  std::int32_t Pop();
  bool Accept(const OrvXmlAttributeValue* attributes);
  void AddDatabase();
  bool PlatformSupported(const unsigned short* list);
  bool PlatformCheck(const OrvXmlAttributeValue* attributes);
  void SetLibrary(const std::string& value);
  void SetParameter();

  std::deque<std::int32_t> m_States;  // back() is the top; the bottom Skip is never popped
  std::string m_FileName;
  // One compiled matcher per pattern, same order (matchers can be neither copied nor moved).
  std::vector<std::unique_ptr<RegularExpression::Matcher>> m_ActiveMatchers;
  TreeNode& m_Driver;
  std::map<std::string, std::string>& m_NameTable;
  const SetupXmlParser& m_Setup;
  Node m_Defaults;
  Node m_Libraries;
  TreeNode* m_CurrentTreeNode = nullptr;  // the database accepted last
  Node* m_CurrentNode = nullptr;          // m_Defaults or the database accepted last
  std::string m_ParameterName;
  std::string m_Text;
  // Scratch texts reused across events.
  std::string m_DatabaseName;
  std::string m_PlatformList;
  std::string m_PlatformName;
};
