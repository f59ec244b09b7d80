#include "qr_config/platform/orv_xml_parser.h"

#include <expat.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <climits>
#include <memory>
#include <type_traits>

#include "qr_config/platform/platform_errors.h"
#include "qr_config/platform/qr_error.h"

static_assert(std::is_same<XML_Char, unsigned short>::value,
              "the parser needs Expat's UTF-16 build (XML_UNICODE)");

namespace {

using PlatformErrors::XmlInputEncoding;

class FileDescriptor {
 public:
  explicit FileDescriptor(int fd) : m_Fd(fd) {}
  ~FileDescriptor() {
    if (m_Fd >= 0) ::close(m_Fd);
  }
  FileDescriptor(const FileDescriptor&) = delete;
  FileDescriptor& operator=(const FileDescriptor&) = delete;
  int Get() const { return m_Fd; }

 private:
  int m_Fd;
};

struct ParserDeleter {
  void operator()(XML_Parser parser) const { XML_ParserFree(parser); }
};
using ParserHandle = std::unique_ptr<XML_ParserStruct, ParserDeleter>;

constexpr std::size_t kMaxChunk = OrvXmlParser::kMaxChunkUnits;

bool IsHighSurrogate(ucs2char unit) {
  return unit >= 0xD800 && unit <= 0xDBFF;
}

bool IsLineBreak(ucs2char unit) {
  return unit == '\n' || unit == '\r';
}

// Reads until `size` bytes are in or the file ends; -1 with errno on a read error.
ssize_t ReadBlock(int fd, char* buffer, std::size_t size) {
  std::size_t done = 0;
  while (done < size) {
    ssize_t n = ::read(fd, buffer + done, size - done);
    if (n < 0) {
      if (errno == EINTR) continue;
      return -1;
    }
    if (n == 0) break;
    done += static_cast<std::size_t>(n);
  }
  return static_cast<ssize_t>(done);
}

// Finds unpaired surrogates in UTF-16 input: Expat takes a high surrogate followed by any
// unit for a pair. Every block but the last has an even size.
class SurrogateCheck {
 public:
  explicit SurrogateCheck(bool bigEndian) : m_BigEndian(bigEndian) {}

  // The number of bytes of `block` before the first unpaired surrogate (`size` when there is
  // none); `site` then receives up to 4 bytes from that surrogate on.
  std::size_t ValidPrefix(const unsigned char* block, std::size_t size, unsigned char* site,
                          std::size_t& siteSize) {
    for (std::size_t i = 0; i + 1 < size; i += 2) {
      unsigned unit = m_BigEndian ? (block[i] << 8) | block[i + 1] : (block[i + 1] << 8) | block[i];
      bool low = unit >= 0xDC00 && unit <= 0xDFFF;
      if (m_PendingHigh) {
        m_PendingHigh = false;
        if (low) continue;
        std::copy_n(m_High, 2, site);
        std::copy_n(block + i, 2, site + 2);
        siteSize = 4;
        return i >= 2 ? i - 2 : 0;  // the high surrogate may sit in the previous block
      }
      if (low) {
        std::copy_n(block + i, 2, site);
        siteSize = 2;
        return i;
      }
      if (unit >= 0xD800 && unit <= 0xDBFF) {
        m_PendingHigh = true;
        std::copy_n(block + i, 2, m_High);
      }
    }
    return size;
  }

 private:
  bool m_BigEndian;
  bool m_PendingHigh = false;
  unsigned char m_High[2] = {0, 0};
};

// UTF-16 when the document starts with a byte-order mark or a UTF-16 "<"; otherwise UTF-8
// until the declaration says more.
XmlInputEncoding EncodingOfPrefix(unsigned char first, unsigned char second) {
  if ((first == 0xFE && second == 0xFF) || (first == 0x00 && second == '<')) {
    return XmlInputEncoding::Utf16BE;
  }
  if ((first == 0xFF && second == 0xFE) || (first == '<' && second == 0x00)) {
    return XmlInputEncoding::Utf16LE;
  }
  return XmlInputEncoding::Utf8;
}

// The encoding of an 8-bit document by its declaration (lower case; empty without one).
XmlInputEncoding EncodingOfDeclaration(const std::string& declared) {
  if (declared == "iso-8859-1") return XmlInputEncoding::Latin1;
  if (declared == "us-ascii") return XmlInputEncoding::Ascii;
  return XmlInputEncoding::Utf8;
}

}  // namespace

// Expat's callbacks. Each one runs the C++ work inside a guard: an exception is stored, the
// parser is stopped, and ParseFile rethrows it once Expat has returned. Callbacks that Expat
// still makes after the stop do nothing.
struct OrvXmlParser::Callbacks {
  template <typename Work>
  static void Guard(void* data, Work&& work) {
    auto& self = *static_cast<OrvXmlParser*>(data);
    self.NoteProgress();
    if (self.m_HandlerError) return;
    try {
      work(self);
    } catch (...) {
      self.m_HandlerError = std::current_exception();
      XML_StopParser(self.m_Parser, XML_FALSE);
    }
  }

  static void XMLCALL Start(void* data, const XML_Char* name, const XML_Char** attributes) {
    Guard(data, [&](OrvXmlParser& self) {
      self.FlushText();
      self.m_Attributes.clear();
      for (; *attributes != nullptr; attributes += 2) {
        self.m_Attributes.push_back({attributes[0], attributes[1]});
      }
      self.m_Attributes.push_back({nullptr, nullptr});
      self.StartElementHandler(name, self.m_Attributes.data());
    });
  }

  static void XMLCALL End(void* data, const XML_Char* name) {
    Guard(data, [&](OrvXmlParser& self) {
      self.FlushText();
      self.EndElementHandler(name);
    });
  }

  static void XMLCALL Text(void* data, const XML_Char* text, int length) {
    Guard(data, [&](OrvXmlParser& self) { self.AppendText(text, length); });
  }

  static void XMLCALL Instruction(void* data, const XML_Char* target, const XML_Char* body) {
    Guard(data, [&](OrvXmlParser& self) {
      self.FlushText();
      self.ProcessingInstructionHandler(target, body);
    });
  }

  static void XMLCALL Default(void* data, const XML_Char* text, int length) {
    Guard(data, [&](OrvXmlParser& self) {
      self.FlushText();
      self.DefaultHandler(text, length);
    });
  }

  // Registered so that CDATA markers neither reach DefaultHandler nor end a chunk.
  static void XMLCALL CdataBoundary(void* data) {
    static_cast<OrvXmlParser*>(data)->NoteProgress();
  }

  static void XMLCALL Declaration(void* data, const XML_Char*, const XML_Char* encoding, int) {
    Guard(data, [&](OrvXmlParser& self) {
      self.m_DeclaredEncoding.clear();
      for (; encoding != nullptr && *encoding != 0; ++encoding) {
        // Encoding names are ASCII; anything else cannot name an encoding Expat knows.
        auto unit = *encoding;
        self.m_DeclaredEncoding.push_back(
            unit < 0x80 ? static_cast<char>(std::tolower(static_cast<unsigned char>(unit))) : '?');
      }
    });
  }
};

OrvXmlParser::OrvXmlParser() = default;
OrvXmlParser::~OrvXmlParser() = default;

void OrvXmlParser::Clear() {
  m_LastError = XmlDiagnostic();
  if (m_Parser != nullptr) return;  // a handler's call: the buffers are in use
  m_Attributes = std::vector<OrvXmlAttributeValue>();
  m_Text = ucs2basic_string();
  m_DeclaredEncoding.clear();
}

void OrvXmlParser::StartElementHandler(const unsigned short*, const OrvXmlAttributeValue*) {}
void OrvXmlParser::EndElementHandler(const unsigned short*) {}
void OrvXmlParser::CharacterDataHandler(const unsigned short*, int) {}
void OrvXmlParser::ProcessingInstructionHandler(const unsigned short*, const unsigned short*) {}
void OrvXmlParser::DefaultHandler(const unsigned short*, int) {}

void OrvXmlParser::AppendText(const ucs2char* text, int length) {
  const ucs2char* end = text + length;
  while (text != end) {
    const ucs2char* lineBreak = std::find_if(text, end, IsLineBreak);
    AppendLinePart(text, lineBreak);
    if (lineBreak == end) return;
    FlushText();
    CharacterDataHandler(lineBreak, 1);
    text = lineBreak + 1;
  }
}

void OrvXmlParser::AppendLinePart(const ucs2char* text, const ucs2char* end) {
  while (text != end) {
    const std::size_t left = static_cast<std::size_t>(end - text);
    std::size_t take = std::min(kMaxChunk - m_Text.size(), left);
    // A surrogate pair never straddles two chunks.
    if (take < left && take > 0 && IsHighSurrogate(text[take - 1])) --take;
    m_Text.append(text, take);
    text += take;
    if (text != end) FlushText();
  }
}

void OrvXmlParser::FlushText() {
  if (m_Text.empty()) return;
  CharacterDataHandler(m_Text.data(), static_cast<int>(m_Text.size()));
  m_Text.clear();
}

void OrvXmlParser::NoteProgress() noexcept {
  // Inside an internal entity the position is that of the reference; it is clamped to the
  // input handed over so far all the same.
  const XML_Index at = XML_GetCurrentByteIndex(m_Parser);
  if (at < 0) return;
  const int count = std::max(XML_GetCurrentByteCount(m_Parser), 0);
  const std::uint64_t end =
      std::min<std::uint64_t>(static_cast<std::uint64_t>(at) + static_cast<unsigned>(count), m_Fed);
  m_Consumed = std::max(m_Consumed, end);
}

void OrvXmlParser::Fail(std::int32_t code, unsigned long line, unsigned long column,
                        std::string message) {
  m_LastError.Code = code;
  m_LastError.Path = m_Path;
  m_LastError.Line = line;
  m_LastError.Column = column;
  m_LastError.Message = std::move(message);
  ThrowQRError(code, m_Path);
}

void OrvXmlParser::ParseFile(const std::string& path) {
  if (m_Parser != nullptr) ThrowQRError(QRErrorCode::ParseRefused, path);
  m_LastError = XmlDiagnostic();
  m_HandlerError = nullptr;
  m_Text.clear();
  m_DeclaredEncoding.clear();
  m_Path = path;

  // Non-blocking only while opening, so that a pipe without a writer cannot hang the open.
  // The type is decided on the opened descriptor, so that a file swapped between a check
  // and the open cannot slip through: only a regular file (after symbolic links) is read.
  FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  struct stat status {};
  if (file.Get() < 0 || ::fstat(file.Get(), &status) != 0) {
    int error = errno;
    Fail(PlatformErrors::ParseCodeOfSystemError(error), 0, 0,
         PlatformErrors::SystemErrorText(error));
  }
  if (S_ISDIR(status.st_mode)) {
    Fail(PlatformErrors::ParseCodeOfSystemError(EISDIR), 0, 0,
         PlatformErrors::SystemErrorText(EISDIR));
  }
  if (!S_ISREG(status.st_mode)) {
    Fail(PlatformErrors::ParseCodeOfSystemError(EINVAL), 0, 0, "not a regular file");
  }
  if (::fcntl(file.Get(), F_SETFL, 0) != 0) {
    int error = errno;
    Fail(PlatformErrors::ParseCodeOfSystemError(error), 0, 0,
         PlatformErrors::SystemErrorText(error));
  }

  ParserHandle parser(XML_ParserCreate(nullptr));
  if (!parser) Fail(QRErrorCode::ParseRefused, 0, 0, XML_ErrorString(XML_ERROR_NO_MEMORY));
  XML_Parser p = parser.get();
  // m_Parser marks the parse as running; it must not outlive `parser`.
  m_Parser = p;
  struct ResetOnExit {
    XML_ParserStruct*& Slot;
    ~ResetOnExit() { Slot = nullptr; }
  } resetOnExit{m_Parser};

  XML_SetUserData(p, this);
  XML_SetParamEntityParsing(p, XML_PARAM_ENTITY_PARSING_NEVER);
  XML_SetElementHandler(p, &Callbacks::Start, &Callbacks::End);
  XML_SetCharacterDataHandler(p, &Callbacks::Text);
  XML_SetProcessingInstructionHandler(p, &Callbacks::Instruction);
  XML_SetCdataSectionHandler(p, &Callbacks::CdataBoundary, &Callbacks::CdataBoundary);
  XML_SetXmlDeclHandler(p, &Callbacks::Declaration);
  // The expanding form keeps internal entities resolved into character data.
  XML_SetDefaultHandlerExpand(p, &Callbacks::Default);

  // Hands `size` bytes of the buffer to Expat; rethrows a handler's exception and reports
  // Expat's errors with their code.
  XmlInputEncoding encoding = XmlInputEncoding::Utf8;
  auto feed = [&](std::size_t size, bool final) {
    XML_Status result = XML_ParseBuffer(p, static_cast<int>(size), final);
    if (m_HandlerError) {
      std::exception_ptr error = std::move(m_HandlerError);
      m_HandlerError = nullptr;
      std::rethrow_exception(error);
    }
    if (result == XML_STATUS_OK) return;
    XML_Error code = XML_GetErrorCode(p);
    int offset = 0, available = 0;
    const char* context = XML_GetInputContext(p, &offset, &available);
    PlatformErrors::XmlErrorSite site;
    if (context != nullptr && offset >= 0 && offset <= available) {
      site.Bytes = reinterpret_cast<const unsigned char*>(context) + offset;
      site.Size = static_cast<std::size_t>(available - offset);
    }
    site.Encoding =
        encoding == XmlInputEncoding::Utf8 ? EncodingOfDeclaration(m_DeclaredEncoding) : encoding;
    Fail(PlatformErrors::ParseCodeOfXmlError(code, site), XML_GetCurrentLineNumber(p),
         XML_GetCurrentColumnNumber(p) + 1, XML_ErrorString(code));
  };

  std::unique_ptr<SurrogateCheck> surrogates;  // only for UTF-16 input
  m_Fed = 0;
  m_Consumed = 0;
  std::size_t blockSize = kBlockSize;
  for (bool first = true;; first = false) {
    auto* buffer = static_cast<unsigned char*>(XML_GetBuffer(p, static_cast<int>(blockSize)));
    if (buffer == nullptr) {
      Fail(QRErrorCode::ParseRefused, 0, 0, XML_ErrorString(XML_GetErrorCode(p)));
    }
    ssize_t size = ReadBlock(file.Get(), reinterpret_cast<char*>(buffer), blockSize);
    if (size < 0) {
      int error = errno;
      Fail(PlatformErrors::ParseCodeOfSystemError(error), 0, 0,
           PlatformErrors::SystemErrorText(error));
    }
    if (first && size >= 2) {
      encoding = EncodingOfPrefix(buffer[0], buffer[1]);
      if (encoding != XmlInputEncoding::Utf8) {
        surrogates = std::make_unique<SurrogateCheck>(encoding == XmlInputEncoding::Utf16BE);
      }
    }
    std::size_t valid = static_cast<std::size_t>(size);
    unsigned char site[4];
    std::size_t siteSize = 0;
    if (surrogates) valid = surrogates->ValidPrefix(buffer, valid, site, siteSize);
    if (size == 0 && surrogates && m_Fed % 2 != 0) {
      Fail(PlatformErrors::ParseCodeOfXmlError(XML_ERROR_PARTIAL_CHAR, {}),
           XML_GetCurrentLineNumber(p), XML_GetCurrentColumnNumber(p) + 1,
           XML_ErrorString(XML_ERROR_PARTIAL_CHAR));
    }
    m_Fed += valid;
    feed(valid, size == 0);
    if (valid != static_cast<std::size_t>(size)) {
      Fail(PlatformErrors::ParseCodeOfXmlError(XML_ERROR_INVALID_TOKEN, {site, siteSize, encoding}),
           XML_GetCurrentLineNumber(p), XML_GetCurrentColumnNumber(p) + 1,
           "unpaired UTF-16 surrogate");
    }
    if (size == 0) break;
    // Expat scans an unfinished token again from its start on every block: the next block
    // is at least as long as the unfinished part, so the scans add up to twice the token.
    // The input not yet consumed by an event is the token in progress; blocks end exactly at
    // the longest token, so a token one byte longer is still unfinished there.
    const std::uint64_t unfinished = m_Fed - m_Consumed;
    if (unfinished >= kMaxTokenBytes) {
      Fail(QRErrorCode::ParseRefused, XML_GetCurrentLineNumber(p),
           XML_GetCurrentColumnNumber(p) + 1, "a token longer than 16 MiB");
    }
    const std::uint64_t grown = (unfinished + kBlockSize - 1) / kBlockSize * kBlockSize;
    blockSize = static_cast<std::size_t>(
        std::min<std::uint64_t>(std::max<std::uint64_t>(kBlockSize, grown),
                                (kMaxTokenBytes - unfinished + 1) & ~std::uint64_t{1}));
  }
  FlushText();
}

unsigned long OrvXmlParser::CurrentLine() const noexcept {
  return m_Parser == nullptr ? 0 : XML_GetCurrentLineNumber(m_Parser);
}

unsigned long OrvXmlParser::CurrentColumn() const noexcept {
  return m_Parser == nullptr ? 0 : XML_GetCurrentColumnNumber(m_Parser) + 1;
}
