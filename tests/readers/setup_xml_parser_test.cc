#include "qr_config/config/readers/setup_xml_parser.h"

#include "reader_test_support.h"

namespace {

std::string Results(const SetupXmlParser& reader) {
  std::string out =
      reader.NetworkLayerName() + "|" + reader.Directory() + "|" + reader.DataFileName() + "|";
  for (const auto& [type, text] : reader.Versions()) out += type + "=" + text + " ";
  return out;
}

// A second parse starts from nothing, except the version type last seen.
TEST(SetupXmlParserTest, ReadsTheFourResults) {
  SetupXmlParser reader;
  reader.Parse(Fixture("setup.xml"));
  EXPECT_EQ(Results(reader), "Drv|second|    indented|A=1.0 B=2.0 C=3.1     ");
  const XmlFile second("<S><Version>2</Version></S>");
  reader.Parse(second.Path());
  EXPECT_EQ(Results(reader), "|||C=2 ");
}

}  // namespace
