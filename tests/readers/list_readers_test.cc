// The readers that fill lists of their own, each on a fixture whose comment says what it
// exercises.
#include "qr_config/config/readers/drv_xml_parser.h"
#include "qr_config/config/readers/loc_drv_xml_parser.h"
#include "qr_config/config/readers/setup_xml_parser.h"
#include "reader_test_support.h"

namespace {

TEST(ListReadersTest, DriverListKeepsNamedLayersInFileOrder) {
  DrvXmlParser reader;
  reader.Parse(Fixture("driver.cfg"));
  std::string entries;  // "name(implementation):alias|alias " per entry
  for (const DriverEntry& e : reader.Entries()) {
    entries += e.Name + "(" + e.Implementation + "):";
    for (const std::string& alias : e.Aliases) entries += alias + "|";
    entries += " ";
  }
  EXPECT_EQ(entries, "A(C):a1|a2| B():\n|    b1|\n| A(Script): Inner(): ");
}

TEST(ListReadersTest, DriverTextsKeepLayersWithAnExternalName) {
  LocDrvXmlParser reader;
  reader.Parse(Fixture("driver_texts.cfg"));
  std::string entries;  // "key=external/comment " per entry
  for (const LocalizedEntry& e : reader.Entries())
    entries += e.Key + "=" + e.ExternalName.str() + "/" + e.Comment.str() + " ";
  EXPECT_EQ(entries, "A=Alpha/first C=Gamma 2/ D=Delta/ E=\n/ A=Again/ ");
}

// A second parse starts from nothing, except the version type last seen.
TEST(ListReadersTest, SetupFileGivesItsFourResults) {
  SetupXmlParser reader;
  const auto results = [&reader] {
    std::string out =
        reader.NetworkLayerName() + "|" + reader.Directory() + "|" + reader.DataFileName() + "|";
    for (const auto& [type, text] : reader.Versions()) out += type + "=" + text + " ";
    return out;
  };
  reader.Parse(Fixture("setup.xml"));
  EXPECT_EQ(results(), "Drv|second|    indented|A=1.0 B=2.0 C=3.1     ");
  const XmlFile second("<S><Version>2</Version></S>");
  reader.Parse(second.Path());
  EXPECT_EQ(results(), "|||C=2 ");
}

}  // namespace
