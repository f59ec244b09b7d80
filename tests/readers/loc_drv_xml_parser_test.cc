#include "qr_config/config/readers/loc_drv_xml_parser.h"

#include "reader_test_support.h"

namespace {

// "key=external/comment" per entry.
std::string Entries(const LocDrvXmlParser& reader) {
  std::string out;
  for (const LocalizedEntry& e : reader.Entries()) {
    out += e.Key + "=" + e.ExternalName.str() + "/" + e.Comment.str() + " ";
  }
  return out;
}

TEST(LocDrvXmlParserTest, ReadsDriversWithAnExternalName) {
  LocDrvXmlParser reader;
  reader.Parse(Fixture("driver_texts.cfg"));
  EXPECT_EQ(Entries(reader), "A=Alpha/first C=Gamma 2/ D=Delta/ E=\n/ A=Again/ ");
}

}  // namespace
