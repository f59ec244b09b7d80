#include "qr_config/config/readers/cfg_xml_parser.h"

#include "reader_test_support.h"

namespace {

class CfgXmlParserTest : public ::testing::Test {
 protected:
  void Parse(Initialization::Mode mode, const Poco::Path& file) {
    CfgXmlParser(mode, &m_Locales, &m_Defaults, &m_Drivers, &m_Traces, &m_Active).Parse(file);
  }
  // "platform:id=language/country/charset " for every entry, in map order.
  std::string Locales() const {
    std::string out;
    for (const auto& [platform, table] : m_Locales) {
      for (const auto& [id, d] : table) {
        out +=
            platform + ":" + id + "=" + d.Language() + "/" + d.Country() + "/" + d.CharSet() + " ";
      }
    }
    return out;
  }

  TestPlatform m_Platform;
  tree<Node> m_Tree{Node("Quorin")};
  TreeNode& m_Defaults = *m_Tree.root().ch_push_back(Node("Drivers defaults"));
  TreeNode& m_Drivers = *m_Tree.root().ch_push_back(Node("DBDrivers"));
  TreeNode& m_Traces = *m_Tree.root().ch_push_back(Node("Traces"));
  TreeNode& m_Active = *m_Tree.root().ch_push_back(Node("ActiveDataSources"));
  CfgXmlParser::PlatformLocales m_Locales;
};

TEST_F(CfgXmlParserTest, SettingsModeSectionAndLocalesByMode) {
  Parse(Initialization::Library, Fixture("settings.cfg"));
  EXPECT_EQ(Describe(m_Drivers), "DBDrivers{A=7, B=true, C='later', F=false, D=12, E=12, E=13}");
  m_Drivers.value().clear();
  Parse(Initialization::Server, Fixture("settings.cfg"));
  EXPECT_EQ(Describe(m_Drivers), "DBDrivers{A=9, B=true, C='setup', F=false, D=12, E=12, E=13}");
  Parse(Initialization::Library, Fixture("locales.cfg"));
  EXPECT_EQ(Locales(), "TestOS:    ww=    ww//cs6 TestOS:xx_YY=xx/YY/cs1 TestOS:zz_QQ=zz/QQ/cs5 ");
  m_Locales.clear();
  Parse(Initialization::Server, Fixture("locales.cfg"));
  EXPECT_EQ(Locales(),
            "Foreign:xx_YY=xx/YY/cs3 OtherOS:xx_YY=xx/YY/cs1 "
            "TestOS:    ww=    ww//cs6 TestOS:xx_YY=xx/YY/cs1 TestOS:zz_QQ=zz/QQ/cs5 ");
}

TEST_F(CfgXmlParserTest, NodesTracesAndDefaults) {
  Parse(Initialization::Server, Fixture("nodes_and_traces.cfg"));
  EXPECT_EQ(Describe(m_Active), "ActiveDataSources{}[N{}[D{} D{}]]");
  EXPECT_EQ(Describe(m_Drivers), "DBDrivers{}[L{P=1}]");
  EXPECT_EQ(Describe(m_Defaults), "Drivers defaults{Status=0}");
  EXPECT_EQ(Describe(m_Traces),
            "Traces{Active=false, ClassID='log'}[G{P=true, Q=false} H{R=false} A{} B{C=true}]");
}

TEST_F(CfgXmlParserTest, EmptyNodeStackIsRefusedWithoutArgument) {
  for (const char* body :
       {R"(<Traces><Trace Name="T" Active="Yes"/></Traces>)",
        R"(<Settings><NetworkLayer><DataBase Name="D"/></NetworkLayer></Settings>)",
        R"(<Language><NetworkLayer Name="N"/></Language>)"}) {
    const XmlFile file(body);
    ExpectQRError([&] { Parse(Initialization::Server, file.Path()); }, QRErrorCode::FileRefused,
                  "");
  }
}

}  // namespace
