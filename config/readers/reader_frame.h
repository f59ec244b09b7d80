// The frame every configuration-file reader is built on.
//
// A reader is an XMLParser whose three handlers (start of element, end of element, character
// data) keep a small state of their own and write what they recognise into the configuration
// tree or into result members. ReaderFrame holds what all readers share: the reader-level
// Parse that runs a file and turns the XML layer's parse codes into the file codes of the
// reader, the text helpers that turn UTF-16 names, values and character data into UTF-8,
// and the classification of a value text into a boolean, integer or text field.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "Poco/Path.h"
#include "qr_config/config/model/node.h"
#include "qr_config/config/readers/load_observer.h"
#include "qr_config/config/readers/reader_vocabulary.h"
#include "qr_config/platform/xml_parser.h"

class LoadTrace;

// The codes a reader reports in place of the XML layer's parse codes 45, 46, 47 and 48.
struct ReaderFileCodes {
  std::int32_t CannotRead;     // for 45
  std::int32_t NotWellFormed;  // for 46
  std::int32_t Encoding;       // for 47
  std::int32_t Refused;        // for 48
};

// Codes of the main, driver-list, localised driver and setup files: 264 to 267.
inline constexpr ReaderFileCodes kConfigFileCodes{264, 265, 266, 267};
// Codes of the data-access files: 279 to 282.
inline constexpr ReaderFileCodes kDataFileCodes{279, 280, 281, 282};

// Conversions of the UTF-16 texts the XML layer hands to the handlers. None of them
// allocates beyond the growth of the target string, so a reader that reuses its buffers
// allocates nothing per event.
namespace ReaderText {

// Replaces `out` with the UTF-8 form of the zero-terminated UTF-16 text (an element name or
// an attribute value). A null pointer gives the empty text.
void Assign(const unsigned short* text, std::string& out);

// Appends the UTF-8 form of `length` UTF-16 units to `out`, without any cut.
void Append(const unsigned short* text, int length, std::string& out);

// The line-break cut of the text-keeping readers: when the chunk holds a line feed or a
// carriage return, the last one and every unit after it are dropped; the rest is appended to
// `out` as UTF-8. "abc" stays whole, "abc\n  " gives "abc", "\n" gives nothing and "a\nb"
// gives "a". The cut applies to each chunk on its own, as the XML layer delivers it: one chunk
// per line break and one per stretch of text between two of them. The line breaks around a
// value therefore fall away, but indentation does not: a value written on the lines between
// its tags keeps the indentation before it and before the end tag ("\n", "  v", "\n", "  "
// give "  v  "). Files write each value on the line of its tags.
void AppendCut(const unsigned short* text, int length, std::string& out);

}  // namespace ReaderText

// One row of a reader's vocabulary, from the name constants the reader compares with.
ElementVocabulary VocabularyEntry(const ucs2string& element,
                                  std::initializer_list<const ucs2string*> attributes = {});
ElementVocabulary VocabularyEntry(const std::string& element,
                                  std::initializer_list<const ucs2string*> attributes = {});

// Base of every reader: an XMLParser with the reader-level Parse.
//
// A reader object serves one thread from construction to destruction; nothing in it is
// locked. The name constants the readers compare with are made while the library is loaded
// and only read afterwards, so readers on different threads may run at the same time.
//
// Diagnostics: a reader given a LoadTrace reports what it decides (load_trace.h): the frame
// itself reports the file read, a parse failure with its line and column, elements and
// attributes outside the reader's vocabulary (the root element's name is free), values the
// line-break cut or the classification take other than written; each reader reports its own
// decisions. Without a trace none of this runs.
class ReaderFrame : public XMLParser {
 public:
  using Field = ConfigManagerTypes::Field;
  using Node = ConfigManagerTypes::Node;

  ReaderFrame(const ReaderFrame&) = delete;
  ReaderFrame& operator=(const ReaderFrame&) = delete;
  ~ReaderFrame() override;

  // Reads `file` and drives the reader's handlers in document order. It hides
  // XMLParser::Parse and is the only way to start a parse. BeginParse runs first.
  // Throws:
  //  - the reader's file code (kConfigFileCodes or kDataFileCodes) for the XML layer's parse
  //    codes 45 (not readable), 46 (not well formed), 47 (encoding) and 48 (refused), with
  //    file.toString() as the argument;
  //  - every other QRError unchanged, in particular one raised by a handler, which ends the
  //    parse where it was raised;
  //  - exceptions of other types untouched.
  // What the handlers wrote before a failure stays where it was written; the reader's
  // results are complete only when Parse returns normally.
  void Parse(const Poco::Path& file);

  // Reports this reader's decisions to `trace` from the next Parse on (null: nothing is
  // reported). The trace must outlive the parses.
  void SetTrace(LoadTrace* trace) { m_Trace = trace; }

 protected:
  // The kind of a value text, in the order a caller uses the classification: boolean when
  // the whole text is one of false, n, no, true, y, ye, yes, ys in any letter case; else
  // integer when it is an optional +, - or | followed by decimal digits and fits 32 bits;
  // else text.
  struct Value {
    enum Kind { Bool, Long, String };
    Kind Type = String;
    bool Boolean = false;
    std::int32_t Integer = 0;
  };

  // `vocabulary`: the elements and attributes the reader acts on, from the names it compares
  // with; it must outlive the reader.
  ReaderFrame(const ReaderFileCodes& codes, FileRole role,
              const std::vector<ElementVocabulary>& vocabulary)
      : m_Codes(codes), m_Role(role), m_Vocabulary(vocabulary) {}

  // Hooks run by Parse before the file is read and after it was read whole; the defaults do
  // nothing.
  virtual void BeginParse(const Poco::Path& file);
  virtual void EndParse();

  // --- Diagnostics, for readers with a trace (m_Trace not null) only.
  // Called first by the reader's start and end handlers: keeps the element stack and the
  // raw text of the current element, and reports names outside the vocabulary.
  void ObserveStart(const unsigned short* name, const OrvXmlAttributeValue* attributes);
  void ObserveEnd() noexcept;
  // Calls ObserveEnd when it goes out of scope, so that an end handler's own work still sees its
  // element as the innermost open one, on every path out of the handler.
  class EndScope {
   public:
    explicit EndScope(ReaderFrame& frame) : m_Frame(frame) {}
    ~EndScope() {
      if (m_Frame.m_Trace != nullptr) m_Frame.ObserveEnd();
    }
    EndScope(const EndScope&) = delete;
    EndScope& operator=(const EndScope&) = delete;

   private:
    ReaderFrame& m_Frame;
  };
  // Called by the character-data handler with every chunk, before any cut.
  void ObserveText(const unsigned short* text, int length);
  // The file being read, kept by the trace.
  std::string_view TracedPath() const { return m_TracedPath; }
  // The current event, and the start tag of the innermost open element.
  SourceLocation Here() const;
  SourceLocation ElementStart() const;
  // The name of the element enclosing the innermost open one; empty at the root.
  const std::string& ParentName() const;
  // The text between the innermost open element's start tag and now, uncut.
  const std::string& RawText() const { return m_RawText; }
  // Reports when the text `kept` of a value element is not the text written between its
  // tags: a value on the lines after its start tag, or text around a child element.
  // `what` describes the element ("<Parameter Name=\"Port\">").
  void TraceLayout(const std::string& kept, const std::string& what);
  // Reports when `text` of a value is classified as text though it looks like a number or a
  // yes/no word (blanks around it, or digits beyond 32 bits). Uses the reader's matchers.
  void TraceClassification(const std::string& text, const std::string& what);
  // Records that `field` of `node` was just set to `text` by the innermost open element
  // (LoadTrace::SetValue).
  void TraceValue(const Node& node, const Field& field, std::string_view source,
                  std::string_view text);

  LoadTrace* m_Trace = nullptr;

  // Classifies `text` with XMLParser::ParseParameter (the reader's own matchers).
  Value Classify(const std::string& text);

  // A field named `name` typed by the classification of `text`: Bool, Long or String.
  Field MakeField(const std::string& name, const std::string& text);

  // Stores the value of `text`, typed by its classification, into `field` with the
  // matching Field::Update. Throws QRError 1 (no argument) when the field holds another
  // type; the field is then unchanged.
  void StoreValue(Field& field, const std::string& text);

 private:
  void SetParseCause(const Poco::Path& file);

  ReaderFileCodes m_Codes;
  FileRole m_Role;
  const std::vector<ElementVocabulary>& m_Vocabulary;
  // Diagnostics state, used with a trace only.
  std::string_view m_TracedPath;
  struct OpenElement {
    std::string Name;
    unsigned long Line;
  };
  std::vector<OpenElement> m_Open;
  std::string m_RawText;
  std::string m_Scratch;
};
