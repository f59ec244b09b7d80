// SFile: reader of sectioned parameter files (character-set lists and tables).
#pragma once

#include <cstdint>
#include <map>
#include <stdexcept>
#include <string>

#include "qr_config/platform/qr_export.h"

// Reads a whole parameter file when made and keeps its sections in memory. The format is
// INI (docs/parameter-files.md):
//
//   ; a comment line (also '#')
//   [CharSets]
//   ISO8859_1 = DB_LATIN1
//   Retries = 3
//
//  - A section header is '[' name ']'; the name is trimmed of white space and must not be
//    empty; only white space may follow the ']'. A header repeated later continues the same
//    section. A section without parameters exists (empty).
//  - A parameter line is name '=' value (':' also separates, at whichever comes first). Name
//    and value are trimmed of white space; the value may be empty, the name may not. There are
//    no inline comments and no continuation lines: ';' inside a value is part of it, and an
//    indented line is an ordinary line.
//  - Blank lines and lines whose first non-blank character is ';' or '#' are skipped.
//    A UTF-8 byte-order mark at the start is skipped. Bytes are taken as they are.
//  - Malformed (Exception kind 0, with the line number): a parameter before the first
//    section header, a line that is neither header, parameter nor comment, a header without
//    ']' or name or with text after ']', a parameter without a name, a NUL byte in a line, or
//    a line longer than kMaxLineBytes.
//  - A name repeated within one section keeps every occurrence: the first is keyed by its
//    name, the k-th (k = 2, 3, ...) by "<name>#<k>" (the number grows further if a parameter
//    literally named so already holds that key). Parameter::Name() is always the plain name.
//
// The file is read as a stream of lines, never whole: memory holds the sections and one
// line. Only a regular file (after symbolic links) is read, decided on the opened descriptor
// (opened without blocking, then fstat), so a FIFO or device can never block the reader, and a
// file larger than kMaxFileBytes is refused (Exception kind 2) before its first byte is read,
// or as soon as more bytes arrive from a file that grows meanwhile.
//
// The file is parsed with inih, whose options are process-wide variables: each parse sets
// them under a process-wide mutex and restores them afterwards, so parses are serialised and
// another user of inih finds its own settings again (one parsing on another thread at the
// same moment would see these). A made SFile is immutable; several threads may read it.
class QR_API SFile {
 public:
  // Mode bits of the constructor. The library passes kRead | kClassify (3). Other bits are
  // ignored.
  static constexpr int kRead = 1;      // read the file; without it there are no sections
  static constexpr int kClassify = 2;  // classify values; without it every value is kind 1
  // The longest line accepted, without its line break.
  static constexpr std::size_t kMaxLineBytes = 1 << 20;
  // The largest file accepted (4 MiB): far above any character-set list, and small enough
  // that the sections read from it stay within a few hundred megabytes of memory.
  static constexpr std::uint64_t kMaxFileBytes = std::uint64_t{4} << 20;

  // A failure of SFile. Kind() tells which:
  //   0 malformed file (Line() gives the line, counted from 1),
  //   1 missing file (no such file or directory on the way),
  //   2 unreadable file (a directory or other non-regular file, no permission, read error,
  //     a file larger than kMaxFileBytes),
  //   3 a parameter read as a kind it does not have (FileName() empty, Line() 0).
  // what() is a full sentence naming the file and, for kind 0, the line.
  class QR_API Exception : public std::runtime_error {
   public:
    Exception(int kind, const std::string& fileName, int line, const std::string& what);
    Exception(const Exception&) = default;
    Exception& operator=(const Exception&) = default;
    ~Exception() override;

    int Kind() const noexcept { return m_Kind; }
    int Line() const noexcept { return m_Line; }
    const std::string& FileName() const noexcept { return m_FileName; }

   private:
    int m_Kind;
    int m_Line;
    std::string m_FileName;
  };

  // One parameter: a name, its text as written, and a kind: 1 text, 2 integer (an optional
  // '+' or '-' and one or more decimal digits whose value fits a 32-bit int; leading zeros
  // allowed), 3 boolean ("true", "yes" or "false", "no", in any letter case).
  class QR_API Parameter {
   public:
    // Tag of the constructor that classifies a raw text.
    struct Classify {};

    // Kind 1 with the given text, unclassified ("12" stays a text).
    Parameter(const std::string& name, const std::string& text);
    Parameter(const std::string& name, const char* text);
    // Kind 2; the text is the decimal form.
    Parameter(const std::string& name, int value);
    // Kind 3; the text is "true" or "false".
    Parameter(const std::string& name, bool value);
    // Kind 1, 2 or 3, as the raw text reads.
    Parameter(Classify, const std::string& name, const std::string& text);
    template <typename T>
    Parameter(const std::string& name, T value) = delete;

    int Kind() const noexcept { return m_Kind; }
    const std::string& Name() const noexcept { return m_Name; }
    // The text as written, for every kind.
    void Value(std::string& out) const { out = m_Text; }
    // The integer (kind 2) or the boolean (kind 3); any other kind throws Exception kind 3
    // and leaves `out` unchanged.
    void Value(int& out) const;
    void Value(bool& out) const;

   private:
    std::string m_Name;
    std::string m_Text;
    int m_Kind = 1;
    int m_Int = 0;
    bool m_Bool = false;
  };

  using Section = std::map<std::string, Parameter>;

  // Reads and parses `fileName` as `mode` says. Throws Exception kinds 0, 1 and 2;
  // std::bad_alloc when memory runs out. Costs time linear in the file's size.
  SFile(const std::string& fileName, int mode);

  const std::string& FileName() const noexcept { return m_FileName; }
  // Every section by name, ordered byte-wise; each maps the parameters' keys (see above) to
  // the parameters.
  const std::map<std::string, Section>& Sections() const noexcept { return m_Sections; }
  // The section named exactly `name`, or nullptr. Valid while this SFile lives.
  const Section* FindSection(const std::string& name) const;

 private:
  std::string m_FileName;
  std::map<std::string, Section> m_Sections;
};
