#include "qr_config/config/readers/drv_xml_parser.h"

#include "reader_test_support.h"

namespace {

// "name(implementation):alias|alias" per entry.
std::string Entries(const DrvXmlParser& reader) {
  std::string out;
  for (const DriverEntry& e : reader.Entries()) {
    out += e.Name + "(" + e.Implementation + "):";
    for (const std::string& alias : e.Aliases) out += alias + "|";
    out += " ";
  }
  return out;
}

TEST(DrvXmlParserTest, ReadsNamedNetworkLayersInFileOrder) {
  DrvXmlParser reader;
  reader.Parse(Fixture("driver.cfg"));
  EXPECT_EQ(Entries(reader), "A(C):a1|a2| B():\n|    b1|\n| A(Script): Inner(): ");
}

}  // namespace
