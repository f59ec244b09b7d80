// Reader of the main configuration file "qr.cfg".
#pragma once

#include <cstdint>
#include <deque>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "qr_config/config/manager/initialization.h"
#include "qr_config/config/model/tree.h"
#include "qr_config/config/readers/reader_frame.h"
#include "qr_config/platform/locale_descriptor.h"

// Reads the main configuration file straight into the configuration tree and the manager's
// per-platform locale table:
//  - "Locale" elements ("Language" text, "CharSet" text per "Platform") into the locale
//    table, filed by the mode: in Initialization::Library under the running platform when the
//    "CharSet" platform is empty or supported, otherwise under every name of
//    Process::OSList(platform); a locale already filed for a platform is never replaced;
//  - "Settings" parameters into fields of the DBDrivers node, its "NetworkLayer" and
//    "DataBase" elements into child nodes, its "ActiveDataSources" section into children of
//    the ActiveDataSources node; the "Library" or "Server" section chosen by the mode updates
//    existing DBDrivers fields of the same type and never adds one;
//  - "DriverDefaults" parameters into fields of the "Drivers defaults" node;
//  - "Traces" into the Traces node: the "Active" field, a "ClassID" field for a "Logger" whose
//    "Implementation" is "C", one node per trace group with one Bool field per trace; a trace
//    is active when it and every group around it say so.
// Parameter values become Bool, Long or String fields by their text (ReaderFrame::Classify)
// and are added with the push_back rule (an equal field is not added twice).
//
// The reader keeps one state number, not a stack: an element that sets the state inside
// another section replaces that section's state; parameters are taken only in the states
// "Settings" (4), selected mode section (6) and "DriverDefaults" (8). Names are compared
// exactly.
//
// Diagnostics (with a trace): the origin of every field and the place of every node it makes;
// a parameter outside any section or after a mode section, a mode-section parameter that
// changes nothing (no such setting, or one of another type), a setting given twice, a
// "NetworkLayer" or "DataBase" without "Name", a locale filed twice, keywords ("No", "C") in
// other letter case, and the cause of a 267.
//
// Errors: QRError 267 without argument when a node is to be taken from, or popped off, an
// empty node stack (for example a single "Trace" directly inside "Traces", or an unnamed
// "NetworkLayer" whose end closes the node above it); parse failures of the file as 264 to
// 267 with its path (ReaderFrame::Parse); errors of the tree, the fields and Process pass
// unchanged. What was written before an error stays in the tree.
class CfgXmlParser : public ReaderFrame {
 public:
  using TreeNode = tree_node<Node>;
  using LocaleTable = std::map<std::string, Quorin::LocaleDescriptor>;
  using PlatformLocales = std::map<std::string, LocaleTable>;

  // The state numbers of m_State. A "Parameter" adds one to its section's state and its end
  // subtracts one again.
  enum State : std::int32_t {
    Outside = 0,
    InLanguage = 1,
    InCharSet = 2,
    InSettings = 3,
    InSettingsParameter = 4,
    InModeSection = 5,
    InModeParameter = 6,
    InDriverDefaults = 7,
    InDefaultsParameter = 8,
  };

  // None of the pointers may be null; the table and the nodes are not owned and must outlive
  // the reader. The start-up sequence passes the manager's table and the four nodes it has
  // just appended to the root.
  CfgXmlParser(Initialization::Mode mode, PlatformLocales* platformLocales,
               TreeNode* driversDefaults, TreeNode* dbDrivers, TreeNode* traces,
               TreeNode* activeDataSources);
  ~CfgXmlParser() override;

  // The elements and attributes this reader acts on.
  static const std::vector<ElementVocabulary>& Vocabulary();

 protected:
  void StartElementHandler(const unsigned short* name,
                           const OrvXmlAttributeValue* attributes) override;
  void EndElementHandler(const unsigned short* name) override;
  void CharacterDataHandler(const unsigned short* text, int length) override;

 private:
  void CreateNode(const std::string& name);
  TreeNode& Top();
  void Pop();
  void LoggerStart(const OrvXmlAttributeValue* attributes);
  void TraceStart(const OrvXmlAttributeValue* attributes);
  void TraceEnd();
  void ParameterEnd();
  void RegisterLocale();
  // Diagnostics helpers, used with a trace only.
  void TraceParameterStart();
  void TraceSetting(Node& node, const Field* before, std::size_t sizeBefore,
                    std::string_view source);
  void TraceModeParameter(const Node& drivers, const Field* field, const Value& value);
  void TraceKeyword(const unsigned short* value, const ucs2string& keyword, const char* attribute,
                    const char* meaning);
  void SetStackCause(const char* element);

  std::int32_t m_State = Outside;
  Initialization::Mode m_Mode;
  PlatformLocales* m_PlatformLocales;
  TreeNode* m_DBDriversNode;
  TreeNode* m_DriversDefaultsNode;
  TreeNode* m_TracesNode;
  TreeNode* m_ActiveDataSourcesNode;
  std::deque<TreeNode*> m_NodeStack;  // back() is the node nested elements attach to
  std::string m_LocaleId;             // "Language" text since the last end of "Locale"
  std::string m_CharSet;              // text of the "CharSet" being read
  std::string m_Name;                 // "Platform", parameter name or pending group name
  std::string m_Text;                 // text of the "Parameter" being read
  std::deque<bool> m_ActiveStack;     // activity of the enclosing "Trace" elements
  std::string m_Value;                // scratch for attribute values, reused
};
