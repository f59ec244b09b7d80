#include "qr_config/config/readers/reader_frame.h"

#include <functional>
#include <memory>
#include <stdexcept>

#include "qr_config/config/readers/cfg_xml_parser.h"
#include "qr_config/config/readers/drv_xml_parser.h"
#include "qr_config/config/readers/dsf_xml_parser.h"
#include "qr_config/config/readers/loc_drv_xml_parser.h"
#include "qr_config/config/readers/setup_xml_parser.h"
#include "reader_test_support.h"

namespace {

// What the readers' constructors need.
struct Dependencies {
  tree<Node> Tree{Node("Quorin")};
  TreeNode& Root = Tree.root();
  CfgXmlParser::PlatformLocales Locales;
  std::map<std::string, std::string> Names;
  SetupXmlParser Setup;
};

template <typename Reader>
std::unique_ptr<Reader> Make(Dependencies& d) {
  if constexpr (std::is_same_v<Reader, CfgXmlParser>) {
    return std::make_unique<Reader>(Initialization::Server, &d.Locales, &d.Root, &d.Root, &d.Root,
                                    &d.Root);
  } else if constexpr (std::is_same_v<Reader, DsfXmlParser>) {
    return std::make_unique<Reader>(d.Root, d.Root, d.Names, d.Setup);
  } else {
    return std::make_unique<Reader>();
  }
}

template <typename Reader>
class ReaderFrameTest : public ::testing::Test {};
using Readers =
    ::testing::Types<CfgXmlParser, DrvXmlParser, LocDrvXmlParser, SetupXmlParser, DsfXmlParser>;
TYPED_TEST_SUITE(ReaderFrameTest, Readers);

TYPED_TEST(ReaderFrameTest, ParseCodesBecomeFileCodesWithThePath) {
  const TempInstallation files;
  const Poco::Path paths[] = {
      Poco::Path(files.Path("missing.xml")), Poco::Path(files.Write("malformed.xml", "<a><b></a>")),
      Poco::Path(files.Write("encoding.xml", "<a>\xff</a>")),
      Poco::Path(files.Write("refused.xml", BillionLaughs() + "<a>&l10;</a>"))};
  const std::int32_t first = std::is_same_v<TypeParam, DsfXmlParser> ? 279 : 264;
  for (std::int32_t i = 0; i < 4; ++i) {
    Dependencies d;
    ExpectQRError([&] { Make<TypeParam>(d)->Parse(paths[i]); }, first + i, paths[i].toString());
  }
}

// A reader whose start handler throws what the test gives it.
struct Probe : ReaderFrame {
  Probe() : ReaderFrame(kConfigFileCodes, FileRole::MainFile, CfgXmlParser::Vocabulary()) {}
  void StartElementHandler(const unsigned short*, const OrvXmlAttributeValue*) override { Throw(); }
  std::function<void()> Throw;
};

TEST(ReaderFrameTest, HandlerErrorsPassUnchanged) {
  const XmlFile file("<a/>");
  Probe reader;
  reader.Throw = [] { ThrowQRError(QRErrorCode::MissingField, "Port"); };
  ExpectQRError([&] { reader.Parse(file.Path()); }, QRErrorCode::MissingField, "Port");
  reader.Throw = [] { throw std::runtime_error("other"); };
  EXPECT_THROW(reader.Parse(file.Path()), std::runtime_error);
}

TEST(ReaderFrameTest, LineBreakCutKeepsTheTextBeforeTheLastBreak) {
  const std::pair<std::u16string, std::string> cases[] = {
      {u"abc", "abc"}, {u"abc\n   ", "abc"},
      {u"\n", ""},     {u"\n  ", ""},
      {u"a\nb", "a"},  {u"a\rb\nc", "a\rb"},
      {u"x\r", "x"},   {u"\u00e9t\u00e9", "\xc3\xa9t\xc3\xa9"}};
  for (const auto& [chunk, kept] : cases) {
    const ucs2basic_string units(chunk.begin(), chunk.end());
    std::string out = ">";
    ReaderText::AppendCut(units.data(), static_cast<int>(units.size()), out);
    EXPECT_EQ(out, ">" + kept) << kept;
  }
}

}  // namespace
