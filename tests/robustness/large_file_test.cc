// A 200 MB file of every XML kind, and a parameter file at its size limit, loads with memory
// bounded beyond the file itself. The file is the kind's baseline document with filler that
// the reader processes but keeps nothing of (repeated settings, rejected databases, unnamed
// drivers, comments), written as a stream into the temporary installation.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>

#include "qr_config/platform/sfile.h"
#include "robustness/memory_probe.h"
#include "robustness/startup_probe.h"
#include "support/manager_fixture.h"

namespace {

constexpr std::size_t kFileBytes = std::size_t{200} << 20;
// Beyond the file itself: the readers keep a line of text and their reused buffers, Expat
// its token buffer.
constexpr double kGrowthMb = 64;

// One line of filler per kind, ending in a line feed.
std::string Filler(FileKind kind) {
  switch (kind) {
    case FileKind::Main:
      return "<Settings><Parameter Name=\"Fill\">12</Parameter></Settings><!-- filler -->"
             "<Other Attribute=\"value\">text &amp; more text</Other>\n";
    case FileKind::DriverList:
      return "<NetworkLayer Implementation=\"C\"><Alias>unnamed</Alias></NetworkLayer>"
             "<!-- a driver without a name is skipped with its aliases -->\n";
    case FileKind::Setup:
      return "<Version Type=\"Fill\">1.0</Version><Other>text text text</Other><!-- x -->\n";
    case FileKind::DataAccess:
      return "<DataBase Name=\"off\" Active=\"No\"><Parameter Name=\"P\">1</Parameter></DataBase>"
             "<Defaults><Parameter Name=\"Fill\">12</Parameter></Defaults>\n";
    case FileKind::Localized:
      return "<NetworkLayer Name=\"Other\"><Message id=\"Other\">text</Message></NetworkLayer>"
             "<!-- no external name: no entry -->\n";
    case FileKind::PlatformList:
    case FileKind::CharSetTable:
      break;
  }
  return "; a comment line of the parameter file, skipped like every comment line ........\n";
}

class LargeFileTest : public ManagerTest {
 protected:
  // Writes the kind's file at about kFileBytes: the baseline document with `filler`
  // repeated, between `open` and `close`, as the last content of the root element (after the
  // last entry for a parameter file).
  void WriteLarge(FileKind kind, const std::string& filler, const std::string& open = "",
                  const std::string& close = "", std::size_t bytes = kFileBytes) {
    const std::string marker = "\x01";
    const std::string text =
        TempInstallation::Document(kind, kBaselinePayload, kXmlDeclaration, marker);
    const std::size_t at = IsXml(kind) ? text.find(marker) : text.size();
    std::ofstream out(m_Install.Path(kind), std::ios::binary | std::ios::trunc);
    out << text.substr(0, at) << open;
    std::string block;
    while (block.size() + filler.size() <= std::min(bytes, std::size_t{1} << 20)) block += filler;
    for (std::size_t written = block.size(); written <= bytes; written += block.size())
      out << block;
    out << close;
    if (at < text.size()) out << text.substr(at + marker.size());
    ASSERT_TRUE(out.good());
  }

  // The peak memory growth of a Library-mode start-up that must load with the baseline probe.
  double LoadingGrowthMb(FileKind kind) {
    std::string outcome;
    const double growth = PeakGrowthMb(
        [&] { outcome = StartupProbe(m_Install).Outcome(kind, Initialization::Library); });
    EXPECT_EQ(outcome, "ok 'v1'");
    return growth;
  }
};

class LargeFileKindTest : public LargeFileTest, public testing::WithParamInterface<FileKind> {};

TEST_P(LargeFileKindTest, LoadsWithBoundedMemory) {
  const FileKind kind = GetParam();
  m_Install.WriteBaseline();
  // Both kinds are streamed; a parameter file larger than its limit is refused unread.
  const std::size_t filler =
      SFile::kMaxFileBytes - TempInstallation::Document(kind, kBaselinePayload).size();
  WriteLarge(kind, Filler(kind), "", "", IsXml(kind) ? kFileBytes : filler);
  const double growth = LoadingGrowthMb(kind);
  if (growth >= 0) {
    EXPECT_LT(growth, kGrowthMb + SanitizerAllowanceMb());
  }
}

INSTANTIATE_TEST_SUITE_P(Kinds, LargeFileKindTest, testing::ValuesIn(AllKinds()),
                         testing::PrintToStringParamName());

// One line of 200 MB inside an element that no reader looks at: the XML layer hands the text
// on in chunks of bounded size.
TEST_F(LargeFileTest, OneLongLineLoadsWithBoundedMemory) {
  m_Install.WriteBaseline();
  WriteLarge(FileKind::Main, std::string(1000, 'x'), "<Ignored>", "</Ignored>");
  const double growth = LoadingGrowthMb(FileKind::Main);
  if (growth >= 0) {
    EXPECT_LT(growth, kGrowthMb + SanitizerAllowanceMb());
  }
}

}  // namespace
