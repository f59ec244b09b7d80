#include "qr_config/platform/sfile.h"

#include <fcntl.h>
#include <ini.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdint>
#include <cstring>
#include <exception>
#include <memory>
#include <mutex>
#include <new>
#include <system_error>

namespace {

using Section = SFile::Section;

// ---------------------------------------------------------------------------------------
// File access. ThrowFileFailure is the one place where errno becomes an Exception kind.

// Throws kind 1 for a file that does not exist (ENOENT, or ENOTDIR: a path component is not
// a directory), kind 2 for every other failure. `detail` replaces the system's text.
[[noreturn]] void ThrowFileFailure(const std::string& fileName, int err,
                                   const std::string& detail = std::string()) {
  const std::string reason =
      detail.empty() ? std::error_code(err, std::generic_category()).message() : detail;
  if (err == ENOENT || err == ENOTDIR)
    throw SFile::Exception(1, fileName, 0,
                           "Parameter file \"" + fileName + "\" does not exist (" + reason + ").");
  throw SFile::Exception(2, fileName, 0,
                         "Cannot read parameter file \"" + fileName + "\": " + reason + ".");
}

// The file as a stream of lines. The file is opened without blocking and its type decided on
// the descriptor (a FIFO swapped in after a check cannot block the open or the reads), and no
// more than SFile::kMaxFileBytes bytes are ever read, even from a file that grows meanwhile.
class LineSource {
 public:
  explicit LineSource(const std::string& fileName) : m_FileName(fileName) {
    // A name with a NUL byte cannot name a file; the C calls would see a shorter name.
    if (fileName.find('\0') != std::string::npos) ThrowFileFailure(fileName, ENOENT);
    m_Fd = ::open(fileName.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (m_Fd < 0) ThrowFileFailure(fileName, errno);
    struct stat status {};
    if (::fstat(m_Fd, &status) != 0) Fail(errno);
    if (S_ISDIR(status.st_mode)) Fail(EISDIR);
    if (!S_ISREG(status.st_mode)) Fail(EINVAL, "not a regular file");
    if (static_cast<std::uint64_t>(status.st_size) > SFile::kMaxFileBytes) TooLarge();
    if (::fcntl(m_Fd, F_SETFL, 0) != 0) Fail(errno);
  }
  ~LineSource() {
    if (m_Fd >= 0) ::close(m_Fd);
  }
  LineSource(const LineSource&) = delete;
  LineSource& operator=(const LineSource&) = delete;

  // The next line with its line feed (none on the last line of a file that lacks one), or
  // false at the end of the file. A line is cut after `maxBytes` bytes without a line feed;
  // the caller sees the cut line as too long.
  bool NextLine(std::string& line, std::size_t maxBytes) {
    line.clear();
    for (;;) {
      if (m_Pos == m_End && !Refill()) return !line.empty();
      const char* begin = m_Buffer.get() + m_Pos;
      const auto* lineFeed = static_cast<const char*>(std::memchr(begin, '\n', m_End - m_Pos));
      const std::size_t available =
          (lineFeed == nullptr ? m_End : lineFeed + 1 - m_Buffer.get()) - m_Pos;
      const std::size_t take = std::min(available, maxBytes + 1 - line.size());
      line.append(begin, take);
      m_Pos += take;
      if ((lineFeed != nullptr && take == available) || line.size() > maxBytes) return true;
    }
  }

 private:
  static constexpr std::size_t kBufferBytes = 1 << 16;

  bool Refill() {
    ssize_t count;
    do {
      count = ::read(m_Fd, m_Buffer.get(), kBufferBytes);
    } while (count < 0 && errno == EINTR);
    if (count < 0) Fail(errno);
    m_Pos = 0;
    m_End = static_cast<std::size_t>(count);
    m_Total += m_End;
    if (m_Total > SFile::kMaxFileBytes) TooLarge();
    return count > 0;
  }

  [[noreturn]] void Fail(int err, const std::string& detail = std::string()) {
    ::close(m_Fd);
    m_Fd = -1;
    ThrowFileFailure(m_FileName, err, detail);
  }
  [[noreturn]] void TooLarge() {
    Fail(EFBIG,
         "the file is larger than the limit of " + std::to_string(SFile::kMaxFileBytes) + " bytes");
  }

  const std::string& m_FileName;
  int m_Fd = -1;
  std::unique_ptr<char[]> m_Buffer{new char[kBufferBytes]};
  std::size_t m_Pos = 0;
  std::size_t m_End = 0;
  std::uint64_t m_Total = 0;
};

// ---------------------------------------------------------------------------------------
// inih's options are process-wide variables. They are set for the length of one parse
// and restored afterwards, under a mutex, so every parse sees the same format whatever
// another user of inih set. (Another thread that parses with inih while SFile runs would
// see these options; the library reads parameter files only during its start-up.)

char kCommentPrefixes[] = ";#";

class ScopedInihOptions {
 public:
  ScopedInihOptions() : m_Lock(Mutex()) {
    ini_allow_multiline = false;        // an indented line is an ordinary line
    ini_allow_bom = false;              // the parser strips the mark itself
    ini_allow_inline_comments = false;  // ';' inside a value belongs to the value
    ini_start_comment_prefixes = kCommentPrefixes;
    ini_use_stack = false;  // a heap line buffer that grows ...
    ini_allow_realloc = true;
    ini_initial_alloc = 256;
    ini_max_line = static_cast<int>(SFile::kMaxLineBytes) + 3;  // ... to the longest line
    ini_stop_on_first_error = true;
    ini_allow_no_value = false;  // "name" alone is malformed
  }
  ~ScopedInihOptions() {
    ini_allow_multiline = m_Saved.AllowMultiline;
    ini_allow_bom = m_Saved.AllowBom;
    ini_allow_inline_comments = m_Saved.AllowInlineComments;
    ini_start_comment_prefixes = m_Saved.StartCommentPrefixes;
    ini_use_stack = m_Saved.UseStack;
    ini_allow_realloc = m_Saved.AllowRealloc;
    ini_initial_alloc = m_Saved.InitialAlloc;
    ini_max_line = m_Saved.MaxLine;
    ini_stop_on_first_error = m_Saved.StopOnFirstError;
    ini_allow_no_value = m_Saved.AllowNoValue;
  }
  ScopedInihOptions(const ScopedInihOptions&) = delete;
  ScopedInihOptions& operator=(const ScopedInihOptions&) = delete;

 private:
  struct Options {
    bool AllowMultiline = ini_allow_multiline;
    bool AllowBom = ini_allow_bom;
    bool AllowInlineComments = ini_allow_inline_comments;
    char* StartCommentPrefixes = ini_start_comment_prefixes;
    bool UseStack = ini_use_stack;
    bool AllowRealloc = ini_allow_realloc;
    int InitialAlloc = ini_initial_alloc;
    int MaxLine = ini_max_line;
    bool StopOnFirstError = ini_stop_on_first_error;
    bool AllowNoValue = ini_allow_no_value;
  };

  static std::mutex& Mutex() {
    static std::mutex mutex;
    return mutex;
  }

  std::lock_guard<std::mutex> m_Lock;
  Options m_Saved;  // read after the lock is taken (member order)
};

// ---------------------------------------------------------------------------------------
// The parse. inih splits name=value lines and trims them; this class feeds it the file line
// by line through a reader function, and on the way checks what inih does not: section
// headers (inih reports none of them, and cuts long names), NUL bytes and line lengths.
// No C++ exception crosses inih: the callbacks record it and stop the parse.

bool IsBlank(char c) {
  return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\v' || c == '\f';
}

class Parser {
 public:
  Parser(const std::string& fileName, bool classify, std::map<std::string, Section>& sections)
      : m_FileName(fileName), m_Source(fileName), m_Classify(classify), m_Sections(sections) {}

  void Run() {
    int result;
    {
      const ScopedInihOptions options;
      result = ini_parse_stream(&Parser::Read, this, &Parser::Handle, this);
    }
    if (m_Failure) std::rethrow_exception(m_Failure);
    if (m_ErrorLine > 0) Malformed(m_ErrorLine, m_ErrorReason);
    if (result == -2) throw std::bad_alloc();
    if (result > 0)
      Malformed(result, "the line is neither a section header, a name = value pair nor a comment");
    if (result != 0) ThrowFileFailure(m_FileName, EIO);
  }

 private:
  [[noreturn]] void Malformed(int line, const std::string& reason) const {
    throw SFile::Exception(0, m_FileName, line,
                           "Malformed parameter file \"" + m_FileName + "\" at line " +
                               std::to_string(line) + ": " + reason + ".");
  }

  void Fail(const char* reason) {
    m_ErrorLine = m_LineNumber;
    m_ErrorReason = reason;
    m_Stopped = true;
  }

  // fgets-like: copies at most num - 1 bytes of the current line, up to and including its
  // line break, into str.
  static char* Read(char* str, int num, void* self) noexcept {
    Parser& parser = *static_cast<Parser*>(self);
    try {
      if (parser.m_Stopped || num < 2) return nullptr;
      if (parser.m_Pos == parser.m_Line.size()) {
        // Room for a byte-order mark, the longest line, its line break and one byte more: a
        // line cut there is too long.
        // inih may ask again after the end: the position must stay within the emptied line.
        const bool more = parser.m_Source.NextLine(parser.m_Line, SFile::kMaxLineBytes + 4);
        parser.m_Pos = 0;
        if (!more) return nullptr;
        if (parser.m_LineNumber == 0 && parser.m_Line.compare(0, 3, "\xEF\xBB\xBF") == 0)
          parser.m_Pos = 3;
        if (!parser.StartLine()) return nullptr;
        if (parser.m_Pos == parser.m_Line.size()) return Read(str, num, self);  // a bare mark
      }
      const std::size_t count =
          std::min(parser.m_Line.size() - parser.m_Pos, static_cast<std::size_t>(num - 1));
      std::memcpy(str, parser.m_Line.data() + parser.m_Pos, count);
      str[count] = '\0';
      parser.m_Pos += count;
      return str;
    } catch (...) {
      parser.m_Failure = std::current_exception();
      parser.m_Stopped = true;
      return nullptr;
    }
  }

  static int Handle(void* self, const char* /*section: cut by inih*/, const char* name,
                    const char* value) noexcept {
    Parser& parser = *static_cast<Parser*>(self);
    try {
      if (parser.m_Stopped) return 0;
      if (parser.m_Current == nullptr) {
        parser.Fail("a parameter stands before the first section header");
        return 0;
      }
      if (*name == '\0') {
        parser.Fail("a parameter needs a name before its '='");
        return 0;
      }
      parser.AddParameter(name, value);
      return 1;
    } catch (...) {
      parser.m_Failure = std::current_exception();
      parser.m_Stopped = true;
      return 0;
    }
  }

  // Checks the line just read (from m_Pos on) and takes a section header; false on an error.
  bool StartLine() {
    ++m_LineNumber;
    const std::size_t end =
        !m_Line.empty() && m_Line.back() == '\n' ? m_Line.size() - 1 : m_Line.size();
    if (end - m_Pos > SFile::kMaxLineBytes) {
      Fail("the line is longer than the limit of 1048576 bytes");
      return false;
    }
    if (std::memchr(m_Line.data() + m_Pos, '\0', end - m_Pos) != nullptr) {
      Fail("the line holds a NUL byte");
      return false;
    }
    std::size_t first = m_Pos;
    while (first < end && IsBlank(m_Line[first])) ++first;
    if (first == end || m_Line[first] != '[') return true;  // blank, comment or parameter

    const std::size_t close = m_Line.find(']', first);
    if (close == std::string::npos || close >= end) {
      Fail("a section header needs a closing ']'");
      return false;
    }
    for (std::size_t i = close + 1; i < end; ++i) {
      if (!IsBlank(m_Line[i])) {
        Fail("only white space may follow the ']' of a section header");
        return false;
      }
    }
    std::size_t nameBegin = first + 1;
    std::size_t nameEnd = close;
    while (nameBegin < nameEnd && IsBlank(m_Line[nameBegin])) ++nameBegin;
    while (nameEnd > nameBegin && IsBlank(m_Line[nameEnd - 1])) --nameEnd;
    if (nameBegin == nameEnd) {
      Fail("a section header needs a name");
      return false;
    }
    m_CurrentName.assign(m_Line, nameBegin, nameEnd - nameBegin);
    m_Current = &m_Sections[m_CurrentName];
    return true;
  }

  void AddParameter(const std::string& name, const char* value) {
    std::string key = name;
    if (m_Current->count(key) != 0) {
      int& next = m_NextSuffix[m_CurrentName][name];
      if (next < 2) next = 2;
      do {
        key = name + "#" + std::to_string(next++);
      } while (m_Current->count(key) != 0);
    }
    if (m_Classify)
      m_Current->emplace(key, SFile::Parameter(SFile::Parameter::Classify{}, name, value));
    else
      m_Current->emplace(key, SFile::Parameter(name, value));
  }

  const std::string& m_FileName;
  LineSource m_Source;
  const bool m_Classify;
  std::map<std::string, Section>& m_Sections;

  std::string m_Line;     // the current line, with its line feed
  std::size_t m_Pos = 0;  // how much of it inih has been given
  int m_LineNumber = 0;
  Section* m_Current = nullptr;  // the section of the last header; null before the first
  std::string m_CurrentName;
  // Per section and name, the next number to try for a repeated name's key.
  std::map<std::string, std::map<std::string, int>> m_NextSuffix;

  bool m_Stopped = false;
  int m_ErrorLine = 0;
  std::string m_ErrorReason;
  std::exception_ptr m_Failure;
};

// ---------------------------------------------------------------------------------------
// Value classification.

bool ParseInt(const std::string& text, int& out) {
  std::size_t i = 0;
  const bool negative = !text.empty() && text[0] == '-';
  if (!text.empty() && (text[0] == '-' || text[0] == '+')) i = 1;
  if (i == text.size()) return false;
  long long magnitude = 0;
  for (; i < text.size(); ++i) {
    if (text[i] < '0' || text[i] > '9') return false;
    magnitude = magnitude * 10 + (text[i] - '0');
    if (magnitude > -static_cast<long long>(INT_MIN)) return false;
  }
  const long long value = negative ? -magnitude : magnitude;
  if (value > INT_MAX) return false;
  out = static_cast<int>(value);
  return true;
}

bool EqualsNoCase(const std::string& text, const char* word) {
  std::size_t i = 0;
  for (; i < text.size() && word[i] != '\0'; ++i) {
    char c = text[i];
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    if (c != word[i]) return false;
  }
  return i == text.size() && word[i] == '\0';
}

const char* KindName(int kind) {
  switch (kind) {
    case 2:
      return "an integer";
    case 3:
      return "a boolean";
    default:
      return "a text";
  }
}

}  // namespace

// -----------------------------------------------------------------------------------------

SFile::Exception::Exception(int kind, const std::string& fileName, int line,
                            const std::string& what)
    : std::runtime_error(what), m_Kind(kind), m_Line(line), m_FileName(fileName) {}

SFile::Exception::~Exception() = default;

SFile::Parameter::Parameter(const std::string& name, const std::string& text)
    : m_Name(name), m_Text(text) {}

SFile::Parameter::Parameter(const std::string& name, const char* text)
    : m_Name(name), m_Text(text) {}

SFile::Parameter::Parameter(const std::string& name, int value)
    : m_Name(name), m_Text(std::to_string(value)), m_Kind(2), m_Int(value) {}

SFile::Parameter::Parameter(const std::string& name, bool value)
    : m_Name(name), m_Text(value ? "true" : "false"), m_Kind(3), m_Bool(value) {}

SFile::Parameter::Parameter(Classify, const std::string& name, const std::string& text)
    : m_Name(name), m_Text(text) {
  if (ParseInt(text, m_Int)) {
    m_Kind = 2;
  } else if (EqualsNoCase(text, "true") || EqualsNoCase(text, "yes")) {
    m_Kind = 3;
    m_Bool = true;
  } else if (EqualsNoCase(text, "false") || EqualsNoCase(text, "no")) {
    m_Kind = 3;
    m_Bool = false;
  }
}

void SFile::Parameter::Value(int& out) const {
  if (m_Kind != 2)
    throw Exception(3, std::string(), 0,
                    "Parameter \"" + m_Name + "\" holds " + KindName(m_Kind) + ", not an integer.");
  out = m_Int;
}

void SFile::Parameter::Value(bool& out) const {
  if (m_Kind != 3)
    throw Exception(3, std::string(), 0,
                    "Parameter \"" + m_Name + "\" holds " + KindName(m_Kind) + ", not a boolean.");
  out = m_Bool;
}

SFile::SFile(const std::string& fileName, int mode) : m_FileName(fileName) {
  if ((mode & kRead) == 0) return;
  Parser(m_FileName, (mode & kClassify) != 0, m_Sections).Run();
}

const SFile::Section* SFile::FindSection(const std::string& name) const {
  const auto it = m_Sections.find(name);
  return it == m_Sections.end() ? nullptr : &it->second;
}
