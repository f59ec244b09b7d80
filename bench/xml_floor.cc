#include "bench/xml_floor.h"

#include <expat.h>
#include <fcntl.h>
#include <unistd.h>

#include <memory>
#include <stdexcept>

#include "qr_config/platform/orv_xml_parser.h"

namespace {

void XMLCALL IgnoreStart(void*, const XML_Char*, const XML_Char**) {}
void XMLCALL IgnoreEnd(void*, const XML_Char*) {}
void XMLCALL IgnoreText(void*, const XML_Char*, int) {}

struct ParserDeleter {
  void operator()(XML_Parser parser) const { XML_ParserFree(parser); }
};

class FileDescriptor {
 public:
  explicit FileDescriptor(const std::string& path) : m_Fd(::open(path.c_str(), O_RDONLY)) {
    if (m_Fd < 0) throw std::runtime_error("cannot open " + path);
  }
  ~FileDescriptor() { ::close(m_Fd); }
  FileDescriptor(const FileDescriptor&) = delete;
  FileDescriptor& operator=(const FileDescriptor&) = delete;
  int Get() const { return m_Fd; }

 private:
  int m_Fd;
};

void ParseOneWithExpat(const std::string& path) {
  FileDescriptor file(path);
  std::unique_ptr<XML_ParserStruct, ParserDeleter> parser(XML_ParserCreate(nullptr));
  if (!parser) throw std::bad_alloc();
  XML_Parser p = parser.get();
  XML_SetElementHandler(p, &IgnoreStart, &IgnoreEnd);
  XML_SetCharacterDataHandler(p, &IgnoreText);
  for (;;) {
    void* buffer = XML_GetBuffer(p, OrvXmlParser::kBlockSize);
    if (buffer == nullptr) throw std::bad_alloc();
    const ssize_t size = ::read(file.Get(), buffer, OrvXmlParser::kBlockSize);
    if (size < 0) throw std::runtime_error("cannot read " + path);
    if (XML_ParseBuffer(p, static_cast<int>(size), size == 0) != XML_STATUS_OK)
      throw std::runtime_error(path + ": " + XML_ErrorString(XML_GetErrorCode(p)));
    if (size == 0) return;
  }
}

// OrvXmlParser with its own handlers, which do nothing.
class NullParser : public OrvXmlParser {
 public:
  void Parse(const std::string& path) { ParseFile(path); }
};

}  // namespace

void XmlFloor::ParseWithExpat(const std::vector<std::string>& files) {
  for (const std::string& file : files) ParseOneWithExpat(file);
}

void XmlFloor::ParseWithOrvXmlParser(const std::vector<std::string>& files) {
  for (const std::string& file : files) {
    NullParser parser;
    try {
      parser.Parse(file);
    } catch (const std::exception&) {
      throw std::runtime_error("cannot parse " + file);
    }
  }
}
