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
#include <string>

#include "Poco/Path.h"
#include "qr_config/config/model/node.h"
#include "qr_config/platform/xml_parser.h"

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

// Base of every reader: an XMLParser with the reader-level Parse.
//
// A reader object serves one thread from construction to destruction; nothing in it is
// locked. The name constants the readers compare with are made while the library is loaded
// and only read afterwards, so readers on different threads may run at the same time.
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

  explicit ReaderFrame(const ReaderFileCodes& codes) : m_Codes(codes) {}

  // Hook run by Parse before the file is read; the default does nothing.
  virtual void BeginParse(const Poco::Path& file);

  // Classifies `text` with XMLParser::ParseParameter (the reader's own matchers).
  Value Classify(const std::string& text);

  // A field named `name` typed by the classification of `text`: Bool, Long or String.
  Field MakeField(const std::string& name, const std::string& text);

  // Stores the value of `text`, typed by its classification, into `field` with the
  // matching Field::Update. Throws QRError 1 (no argument) when the field holds another
  // type; the field is then unchanged.
  void StoreValue(Field& field, const std::string& text);

 private:
  ReaderFileCodes m_Codes;
};
