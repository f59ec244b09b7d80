#include "config/readers/setup_xml_parser.h"

#include "reader_test_support.h"

namespace {

std::string Results(const SetupXmlParser& reader) {
  std::string out =
      reader.NetworkLayerName() + "|" + reader.Directory() + "|" + reader.DataFileName() + "|";
  for (const auto& [type, text] : reader.Versions()) out += type + "=" + text + " ";
  return out;
}

TEST(SetupXmlParserTest, ReadsTheFourResults) {
  SetupXmlParser reader;
  reader.Parse(Fixture("setup.xml"));
  EXPECT_EQ(Results(reader), "Drv|second|    indented|A=1.0 B=2.0 C=3.1     ");
}

TEST(SetupXmlParserTest, SecondParseKeepsOnlyTheLastVersionType) {
  const XmlFile first(R"(<S><NetworkLayer Name="One"/><Directory>d</Directory>
    <DataFileName>f</DataFileName><Version Type="Client">1</Version></S>)");
  const XmlFile second("<S><Version>2</Version></S>");
  SetupXmlParser reader;
  reader.Parse(first.Path());
  reader.Parse(second.Path());
  EXPECT_EQ(Results(reader), "|||Client=2 ");
}

}  // namespace
