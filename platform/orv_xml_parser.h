// OrvXmlParser: the event-driven XML parser under every reader of the library.
//
// It reads a file with Expat's UTF-16 build and calls the virtual handlers below in document
// order; a reader derives from it (through XMLParser) and overrides the handlers it needs.
// All texts handed to the handlers are UTF-16 code units (`unsigned short`).
//
// Contract of ParseFile:
//  - Only a regular file is read, decided on the opened descriptor (opened without blocking,
//    then fstat): a FIFO, socket or device, also behind a symbolic link, is refused at once
//    with 45, so that no file can block the caller.
//  - The file is read in blocks of kBlockSize bytes, longer while a token stays unfinished:
//    a block is at least as long as the unfinished token, so the cost is linear in the size
//    of the file whatever the length of a token. A token (markup that Expat reports as one
//    event: a start tag with its attributes, a comment, a processing instruction, a
//    declaration) longer than kMaxTokenBytes (16 MiB) is refused with 48. Memory beyond the
//    blocks is Expat's own (bounded by the longest token) plus the text of the current line.
//  - Accepted encodings: UTF-8 (the default), UTF-16 with a byte-order mark or starting with
//    "<", ISO-8859-1 and US-ASCII when declared. Line ends are normalised to line feed.
//  - Character data comes in chunks that do not depend on block sizes: every line break is a
//    chunk of its own (a line feed, or a carriage return that only a character reference such
//    as &#13; can produce), and the text between two line breaks, with entity and character
//    references resolved and CDATA sections joined to the text around them, is one chunk.
//    Any other event (start or end tag, processing instruction, comment, markup given to
//    DefaultHandler) also ends the pending chunk first. "Tom &amp; Jerry" on one line is one
//    chunk; "a", line feed, "b" is three. A line longer than kMaxChunkUnits (4 Mi) code units
//    comes in several chunks of at most that many units (a surrogate pair is never split), so
//    memory stays bounded whatever the length of a line.
//  - No external entity and no external DTD is ever loaded; a reference to an external entity
//    delivers nothing. Expat's protection against entity amplification stays on (code 48).
//    Depth is not limited: Expat is iterative and so is this class.
//  - No allocation per event: the attribute array and the text buffer are reused members.
//  - Failures throw QRError(3, 256, code, path) where path is the argument of ParseFile:
//      45 the file cannot be opened or read (missing, a directory, not a regular file, no
//         permission, read error);
//      46 the document is not well-formed (syntax, tags, entities, characters such as NUL
//         that XML forbids, an empty file);
//      47 an encoding problem: unknown or incorrect encoding declaration, bytes that are not a
//         character of the document's encoding (invalid UTF-8, unpaired UTF-16 surrogate, a
//         partial character at the end such as one odd trailing byte of UTF-16 input);
//      48 anything else Expat refuses (entity amplification, external entity handling, out of
//         memory), a token longer than kMaxTokenBytes, and a ParseFile called from a handler
//         of the same object.
//    PlatformErrors::ParseCodeOfXmlError (platform_errors.h) holds the mapping. UTF-16 input
//    is checked for unpaired surrogates here, since Expat pairs a high surrogate with any unit.
//    The events before the point of failure have been delivered when the error is thrown.
//  - An exception thrown by a handler ends the parse and leaves ParseFile unchanged (same
//    object, same type); the rest of the file is not read. Exceptions never cross Expat's
//    C frames: the callback stores it, stops the parser and ParseFile rethrows it.
//
// One object parses one file at a time on one thread; nothing in it is locked.
#pragma once

#include <cstddef>
#include <cstdint>
#include <exception>
#include <string>
#include <vector>

#include "qr_config/platform/i18n_string.h"
#include "qr_config/platform/qr_export.h"

struct XML_ParserStruct;

// One attribute of an element: both texts zero-terminated UTF-16, valid only during the
// StartElementHandler call that receives them.
struct OrvXmlAttributeValue {
  const unsigned short* Name;
  const unsigned short* Value;
};

// Where and why the last ParseFile failed, for tools that show a position.
struct XmlDiagnostic {
  std::int32_t Code = 0;     // 45 to 48; 0 when the last parse did not fail by itself
  std::string Path;          // the argument of ParseFile
  unsigned long Line = 0;    // 1-based; 0 when the failure has no position (code 45)
  unsigned long Column = 0;  // 1-based, counted in characters of the input; 0 with Line 0
  std::string Message;       // Expat's description, or the system's for code 45
};

class OrvXmlParser {
 public:
  // The longest chunk of text the handlers receive, in UTF-16 code units.
  static constexpr std::size_t kMaxChunkUnits = std::size_t{1} << 22;

  // Size of the smallest block ParseFile reads; a block is at least as long as the token
  // that the blocks before it left unfinished.
  static constexpr int kBlockSize = 64 * 1024;
  // The longest token, in bytes of input: a start tag with its attributes, an end tag, a
  // comment, a processing instruction or a declaration longer than this is refused (48).
  static constexpr std::uint64_t kMaxTokenBytes = std::uint64_t{16} << 20;

  OrvXmlParser();
  virtual ~OrvXmlParser();
  OrvXmlParser(const OrvXmlParser&) = delete;
  OrvXmlParser& operator=(const OrvXmlParser&) = delete;

  // Forgets the last diagnostic and releases the reused buffers. Never called by ParseFile.
  virtual void Clear();

  // The start of an element. `attributes` lists the element's attributes in document order
  // and ends with an entry whose Name is null (the first entry for an element without any).
  virtual void StartElementHandler(const unsigned short* name,
                                   const OrvXmlAttributeValue* attributes);
  virtual void EndElementHandler(const unsigned short* name);
  // One chunk of character data (see the file comment); `text` is not zero-terminated.
  virtual void CharacterDataHandler(const unsigned short* text, int length);
  // A processing instruction; `data` is empty when it has none. Does nothing here.
  virtual void ProcessingInstructionHandler(const unsigned short* target,
                                            const unsigned short* data);
  // Markup that has no handler of its own (comments, the document type declaration, white
  // space outside the root element), as raw text. Does nothing here.
  virtual void DefaultHandler(const unsigned short* text, int length);

  // The diagnostic of the last ParseFile; Code 0 when it succeeded or a handler ended it.
  const XmlDiagnostic& LastError() const { return m_LastError; }

  // While a handler runs: the 1-based line and column of the event the parser is reporting
  // (for a chunk of text, of the line break or markup that ended the chunk). 0 outside a
  // parse. For diagnostics only.
  unsigned long CurrentLine() const noexcept;
  unsigned long CurrentColumn() const noexcept;

 protected:
  // Parses the file at `path` and drives the handlers; see the file comment for the codes.
  void ParseFile(const std::string& path);

 private:
  struct Callbacks;  // Expat's C callbacks (orv_xml_parser.cc)

  void AppendText(const ucs2char* text, int length);
  void AppendLinePart(const ucs2char* text, const ucs2char* end);
  void FlushText();
  // Records how far the events have consumed the input (called by every callback).
  void NoteProgress() noexcept;
  [[noreturn]] void Fail(std::int32_t code, unsigned long line, unsigned long column,
                         std::string message);

  XML_ParserStruct* m_Parser = nullptr;  // the Expat parser while ParseFile runs
  std::exception_ptr m_HandlerError;     // the first exception a handler threw
  std::vector<OrvXmlAttributeValue> m_Attributes;
  ucs2basic_string m_Text;         // character data since the last chunk ended
  std::string m_DeclaredEncoding;  // from the XML declaration, if any
  std::uint64_t m_Fed = 0;         // bytes of input handed to Expat
  std::uint64_t m_Consumed = 0;    // bytes of input up to the end of the last event
  std::string m_Path;
  XmlDiagnostic m_LastError;
};
