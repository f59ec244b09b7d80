#include "qr_config/platform/orv_xml_parser.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

#include "qr_config/platform/qr_error.h"
#include "support/temp_installation.h"

// External entities and deep nesting: tests/robustness/broken_files_test.cc, through every
// reader.
namespace {

using namespace std::string_literals;

std::string Utf8(const unsigned short* units, int count = -1) {
  if (count < 0) count = static_cast<int>(std::char_traits<ucs2char>::length(units));
  return orv_utf8string(units, static_cast<std::size_t>(count)).str();
}

// Records the events as "<name a=v>", "</name>" or the chunk, each followed by '|'.
class Recorder : public OrvXmlParser {
 public:
  using OrvXmlParser::ParseFile;
  void StartElementHandler(const unsigned short* name, const OrvXmlAttributeValue* a) override {
    Events += "<" + Utf8(name);
    for (; a->Name != nullptr; ++a) Events += " " + Utf8(a->Name) + "=" + Utf8(a->Value);
    Events += ">|";
  }
  void EndElementHandler(const unsigned short* name) override {
    Events += "</" + Utf8(name) + ">|";
  }
  void CharacterDataHandler(const unsigned short* text, int length) override {
    Events += Utf8(text, length) + "|";
  }
  std::string Events;
};

// The parse code of `path` (0 when it parses) with `reused` or a fresh parser, checking that
// the error names the path.
std::int32_t CodeOf(const std::string& path, Recorder* reused = nullptr) {
  Recorder fresh;
  Recorder& recorder = reused != nullptr ? *reused : fresh;
  try {
    recorder.ParseFile(path);
  } catch (const QRError& error) {
    EXPECT_EQ(path, error.Argument().str());
    EXPECT_EQ(error.Code(), recorder.LastError().Code);
    return error.Code();
  }
  return 0;
}

TEST(OrvXmlParserTest, CharacterDataComesInLineChunks) {
  const std::string cases[][2] = {
      {"<a x='1' y=\"&lt;2\">Tom &amp; Jerry</a>", "<a x=1 y=<2>|Tom & Jerry|</a>|"},
      {"<a>a\nb</a>", "<a>|a|\n|b|</a>|"},
      {"<a>x\r\ny\rz</a>", "<a>|x|\n|y|\n|z|</a>|"},
      {"<a>p<![CDATA[<q>\n]]>r&#65;s</a>", "<a>|p<q>|\n|rAs|</a>|"},
      {"<a>a&#13;b&#10;c</a>", "<a>|a|\r|b|\n|c|</a>|"},
      {"<a>\n  <b/>x<!--c-->y</a>", "<a>|\n|  |<b>|</b>|x|y|</a>|"},
      {"<!DOCTYPE a [<!ENTITY e 'one\ntwo'>]><a>[&e;]</a>", "<a>|[one|\n|two]|</a>|"},
      // UTF-16 with byte-order marks, declared ISO-8859-1, UTF-8 with byte-order mark.
      {"\xFF\xFE<\0a\0>\0\xE9\0<\0/\0a\0>\0"s, "<a>|\xC3\xA9|</a>|"},
      {"\xFE\xFF\0<\0a\0>\0\xE9\0<\0/\0a\0>"s, "<a>|\xC3\xA9|</a>|"},
      {"\xFF\xFE<\0a\0>\0\xFF\xDB\xFF\xDF<\0/\0a\0>\0"s, "<a>|\xF4\x8F\xBF\xBF|</a>|"},
      {"<\0a\0>\0\xE9\0<\0/\0a\0>\0"s, "<a>|\xC3\xA9|</a>|"},  // UTF-16 without a mark
      {"<?xml version='1.0' encoding='ISO-8859-1'?><a>\xE9</a>", "<a>|\xC3\xA9|</a>|"},
      {"\xEF\xBB\xBF<a>\xC3\xA9</a>", "<a>|\xC3\xA9|</a>|"},
  };
  TempInstallation dir;
  for (const auto& c : cases) {
    Recorder recorder;
    recorder.ParseFile(dir.Write("doc.xml", c[0]));
    EXPECT_EQ(c[1], recorder.Events) << c[0];
  }
}

TEST(OrvXmlParserTest, ChunksDoNotDependOnBlockBoundaries) {
  const std::string unit = "ab&amp;<![CDATA[c]]>&#66;";
  std::string text, expected;
  for (int i = 0; i < 3000; ++i) text += unit, expected += "ab&cB";  // more than one block
  TempInstallation dir;
  // Shift the text by every offset within a unit, so that a block boundary falls at every
  // position of a reference and a CDATA marker.
  for (std::size_t pad = 1; pad <= unit.size() + 1; ++pad) {
    Recorder recorder;
    recorder.ParseFile(
        dir.Write("big.xml", "<a" + std::string(pad, ' ') + ">" + text + "\r\n" + text + "</a>"));
    EXPECT_EQ("<a>|" + expected + "|\n|" + expected + "|</a>|", recorder.Events) << pad;
  }
}

TEST(OrvXmlParserTest, OverlongLinesComeInBoundedChunksThatKeepSurrogatePairs) {
  // A pair that would straddle the bound, then more text than one chunk holds. (EXPECT_TRUE:
  // a failure must not print megabytes.)
  const std::size_t bound = OrvXmlParser::kMaxChunkUnits;
  const std::string pair = "\xF0\x9F\x98\x80";
  TempInstallation dir;
  Recorder recorder;
  recorder.ParseFile(dir.Write("long.xml", "<a>" + std::string(bound - 1, 'a') + pair +
                                               std::string(bound + 10, 'b') + "</a>"));
  EXPECT_TRUE("<a>|" + std::string(bound - 1, 'a') + "|" + pair + std::string(bound - 2, 'b') +
                  "|" + std::string(12, 'b') + "|</a>|" ==
              recorder.Events);
}

TEST(OrvXmlParserTest, FailuresCarryTheirCodePathAndPosition) {
  // clang-format off
  std::vector<std::pair<std::string, std::int32_t>> cases = {
      {"", 46}, {"<a><b>text", 46}, {"<a>x\0y</a>"s, 46}, {"<a>x\xFFy</a>", 47},
      {"<a/>\xC3", 47}, {"<?xml version='1.0' encoding='klingon'?><a/>", 47},
      {"<?xml version='1.0' encoding='UTF-16'?><a/>", 47},
      {"\xFF\xFE<\0a\0>\0\0\xD8x\0<\0/\0a\0>\0"s, 47},  // lone high surrogate
      {"\xFE\xFF\0<\0a\0>\xD8\0\0x\0<\0/\0a\0>"s, 47},  // the same, big-endian
      {"\xFF\xFE<\0a\0>\0\xFF\xDF<\0/\0a\0>\0"s, 47},  // lone low surrogate
      // A well-formed pair at both ends of the low range, but no name character: 46.
      {"\xFF\xFE<\0\0\xD8\0\xDC/\0>\0"s, 46}, {"\xFF\xFE<\0\xFF\xDB\xFF\xDF/\0>\0"s, 46},
      {"\xFF\xFE<\0a\0>\0\0\xD8"s, 47},  // high surrogate at the end
      {"\xFF\xFE<\0a\0>\0\x01\0<\0/\0a\0>\0"s, 46},  // no XML character, but UTF-16
      {"<?xml version='1.0' encoding='US-ASCII'?><a>\x80</a>", 47},
      {"<?xml version='1.0' encoding='US-ASCII'?><a>\x01</a>", 46},
      {"<?xml version='1.0' encoding='ISO-8859-1'?><\xD7/>", 46},
      {"\xFF\xFE<\0a\0/\0>\0\n"s, 47},  // an odd trailing byte of UTF-16
      // The longest token is read in linear time; one byte more is refused.
      {"<a b='" + std::string(OrvXmlParser::kMaxTokenBytes - 9, 'x') + "'/>", 0},
      {"<a b='" + std::string(OrvXmlParser::kMaxTokenBytes, 'x') + "'/>", 48},
      {"<a><!--" + std::string(OrvXmlParser::kMaxTokenBytes, 'x') + "--></a>", 48}};
  // clang-format on
  // An invalid token at a character: 46 when it is well-formed UTF-8 (at the bounds of each
  // lead byte's range), 47 when it is not.
  for (const char* character : {"\xC2\x80", "\xDF\xBF", "\xE0\xA0\x80", "\xED\x9F\xBF",
                                "\xEF\xBF\xBF", "\xF0\x90\x80\x80", "\xF4\x8F\xBF\xBF"})
    cases.push_back({"<" + std::string(character) + "/>", 46});
  cases.push_back({"<\xC2\x80", 46});  // the character ends the file
  for (const char* bytes : {"\x80", "\xC1\xBF", "\xE0\x9F\xBF", "\xED\xA0\x80", "\xE1\x80\x7F",
                            "\xF0\x8F\xBF\xBF", "\xF4\x90\x80\x80", "\xF5\x80\x80\x80"})
    cases.push_back({"<" + std::string(bytes) + "/>", 47});
  TempInstallation dir;
  for (const auto& [document, code] : cases) {
    EXPECT_EQ(code, CodeOf(dir.Write("bad.xml", document))) << document.substr(0, 60);
  }
  // Files that cannot be opened or are not regular files (FIFOs, devices, behind links too):
  // tests/robustness/broken_files_test.cc, through every reader.
  EXPECT_EQ(45, CodeOf(dir.Path("missing.xml")));
  // A reused parser: the first document's declared encoding does not hold for the next.
  Recorder recorder;
  EXPECT_EQ(46, CodeOf(dir.Write("latin.xml", "<?xml version='1.0' encoding='ISO-8859-1'?><\xD7/>"),
                       &recorder));
  EXPECT_EQ(47, CodeOf(dir.Write("utf8.xml", "<\xD7/>"), &recorder));
  EXPECT_EQ(46, CodeOf(dir.Write("doc.xml", "<a>\n  <b></c>\n</a>"), &recorder));
  EXPECT_EQ(2u, recorder.LastError().Line);
  EXPECT_EQ(8u, recorder.LastError().Column);
  EXPECT_EQ("mismatched tag", recorder.LastError().Message);
  EXPECT_EQ(47,
            CodeOf(dir.Write("lone.xml", "\xFF\xFE<\0a\0>\0\0\xD8x\0<\0/\0a\0>\0"s), &recorder));
  EXPECT_EQ(5u, recorder.LastError().Column);  // at the surrogate; the mark counts, as in Expat
}

TEST(OrvXmlParserTest, HandlerExceptionsPassUnchanged) {
  struct Thrower : Recorder {
    void EndElementHandler(const unsigned short*) override {
      if (Library) ThrowQRError(267);
      throw std::runtime_error("other");
    }
    bool Library = true;
  } thrower;
  TempInstallation dir;
  const std::string path = dir.Write("doc.xml", "<a><b>text</b></a>");
  try {
    thrower.ParseFile(path);
    ADD_FAILURE();
  } catch (const QRError& error) {
    EXPECT_EQ(267, error.Code());
    EXPECT_EQ("", error.Argument().str());
  }
  EXPECT_EQ("<a>|<b>|text|", thrower.Events) << "nothing after the throw";
  thrower.Library = false;
  EXPECT_THROW(thrower.ParseFile(path), std::runtime_error) << "reusable after a throw";
}

}  // namespace
