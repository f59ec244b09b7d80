#include "qr_config/config/readers/dsf_xml_parser.h"

#include "reader_test_support.h"

namespace {

class DsfXmlParserTest : public ::testing::Test {
 protected:
  DsfXmlParserTest() {
    m_Defaults.value().push_back(Field("Status", std::int32_t{0}));
    const XmlFile setup("<S><Directory>dir</Directory><Version Type=\"V\">1</Version></S>");
    m_Setup.Parse(setup.Path());
  }
  // Parses `file`; sets m_Standard to the fields every database it accepts gets after those
  // of the defaults.
  void Parse(const Poco::Path& file, const std::vector<std::string>& patterns = {}) {
    m_Standard = "Configuration File='" + file.toString() + "', Directory='dir', V='1'";
    DsfXmlParser reader(m_Defaults, m_Driver, m_Names, m_Setup);
    reader.SetActiveDatabases(patterns);
    reader.Parse(file);
  }

  TestPlatform m_Platform;
  tree<Node> m_Tree{Node("Quorin")};
  TreeNode& m_Defaults = *m_Tree.root().ch_push_back(Node("Drivers defaults"));
  TreeNode& m_Driver = *m_Tree.root().ch_push_back(Node("Drv"));
  std::map<std::string, std::string> m_Names;
  SetupXmlParser m_Setup;
  std::string m_Standard;
};

TEST_F(DsfXmlParserTest, DatabaseAcceptance) {
  const struct {
    std::string Attributes;
    std::vector<std::string> Patterns;
    std::size_t Accepted;
  } cases[] = {
      {R"(Name="db1")", {}, 0},
      {R"(Name="db1" Active="No")", {}, 0},
      {R"(Name="db1" Active="no")", {}, 1},
      {R"(Name="db1" Active="Yes" Platform="p1,p2")", {}, 1},
      {R"(Name="db1" Active="Yes" Platform="p1,p3")", {}, 0},
      {R"(Name="db12" Active="Yes")", {"x", "db[0-9]+"}, 1},
      {R"(Name="mydb12" Active="Yes")", {"db[0-9]+"}, 0},
  };
  for (const auto& c : cases) {
    const std::size_t before = m_Driver.ch_size();
    const XmlFile file("<Data><DataBase " + c.Attributes + "/></Data>");
    Parse(file.Path(), c.Patterns);
    EXPECT_EQ(m_Driver.ch_size() - before, c.Accepted) << c.Attributes;
    m_Names.clear();
  }
  // A database without a name gets none from the one before it.
  const XmlFile unnamed(
      R"(<Data><DataBase Name="a" Active="Yes"/><DataBase Active="Yes"/></Data>)");
  Parse(unnamed.Path());
  EXPECT_EQ((*std::prev(m_Driver.ch_end())).value().Name(), "");
}

TEST_F(DsfXmlParserTest, DefaultsReachLaterDatabasesAndParametersUpdateThem) {
  Parse(Fixture("defaults.dsf"));
  EXPECT_EQ(Describe(m_Driver), "Drv{}[d1{Status=0, Port=1522, Library='deflib', " + m_Standard +
                                    ", Flag=true} d2{Status=0, Port=1521, Library='own', "
                                    "Extra='x', " +
                                    m_Standard + "}]");
}

// A database's "Parameter" acts on the first field of its name, wherever it came from: the
// defaults, the setup file (added only when no equal field is there), or the database itself.
TEST_F(DsfXmlParserTest, ParametersActOnTheFirstFieldOfTheirName) {
  const XmlFile file(R"(<Data><Defaults><Parameter Name="Directory">dir</Parameter>
    <Parameter Name="V">0</Parameter></Defaults>
    <DataBase Name="d" Active="Yes"><Parameter Name="V">2</Parameter>
    <Parameter Name="Directory">own</Parameter><Parameter Name="New">a</Parameter>
    <Parameter Name="New">b</Parameter><Parameter Name="Status">3</Parameter></DataBase>
    <DataBase Name="e" Active="Yes"/></Data>)");
  Parse(file.Path());
  const std::string path = "Configuration File='" + file.Path().toString() + "'";
  EXPECT_EQ(Describe(m_Driver), "Drv{}[d{Status=3, Directory='own', V=2, " + path +
                                    ", V='1', New='b'} e{Status=0, Directory='dir', V=0, " + path +
                                    ", V='1'}]");
}

// The table of first fields gives, for each database node the readers made, what Node::Find
// gives once the reader is done with it, whatever the order of the questions; nothing for a
// node it did not make or was still filling when the parse failed.
TEST_F(DsfXmlParserTest, RecordsTheFirstFieldsOfEachDatabase) {
  const std::string added = "Added", missing = "Missing", status = "Status";
  DsfXmlParser::DatabaseFields table({&status, &added, &missing});
  const XmlFile file(R"(<Data><DataBase Name="a" Active="Yes"><Parameter Name="Added">1</Parameter>
    <Parameter Name="Added">2</Parameter></DataBase><DataBase Name="b" Active="Yes"/>
    <Defaults/><Parameter Name="Added">x</Parameter></Data>)");
  const XmlFile broken(R"(<Data><DataBase Name="c" Active="Yes"></Data>)");
  {
    DsfXmlParser reader(m_Defaults, m_Driver, m_Names, m_Setup);
    reader.RecordDatabaseFields(&table);
    reader.Parse(file.Path());
    DsfXmlParser failing(m_Defaults, m_Driver, m_Names, m_Setup);
    failing.RecordDatabaseFields(&table);
    EXPECT_THROW(failing.Parse(broken.Path()), QRError);
  }
  ASSERT_EQ(m_Driver.ch_size(), 3u);
  TreeNode& a = *m_Driver.ch_begin();
  TreeNode& b = *std::next(m_Driver.ch_begin());
  for (TreeNode* node : {&b, &a, &b}) {  // out of order, then in order again
    Field* const* first = table.Of(*node);
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(first[0], &node->value().Find("Status"));
    EXPECT_EQ(first[1], node->value().Exists("Added") ? &node->value().Find("Added") : nullptr);
    EXPECT_EQ(first[2], nullptr);
  }
  EXPECT_EQ(Describe(a.value().Find("Added")), "Added=2");
  EXPECT_EQ(table.Of(*std::next(m_Driver.ch_begin(), 2)), nullptr);  // c: the parse failed
  EXPECT_EQ(table.Of(m_Defaults), nullptr);
}

TEST_F(DsfXmlParserTest, LibraryLists) {
  Parse(Fixture("libraries.dsf"));
  const std::string fields = "{Status=0, Library='Undefined', " + m_Standard + "}";
  EXPECT_EQ(Describe(m_Driver), "Drv{}[d1" + fields +
                                    "[Libraries{Library='a', Library='b'} Libraries{Library='c'}]"
                                    " d2" +
                                    fields + "]");
}

TEST_F(DsfXmlParserTest, NamesAndAliases) {
  Parse(Fixture("aliases.dsf"));
  const std::map<std::string, std::string> names{
      {"d1", "d1"}, {"d2", "d2"}, {"x1", "d1"}, {"x2", "d1"}};
  EXPECT_EQ(m_Names, names);
  EXPECT_EQ(m_Driver.ch_size(), 3u);
}

TEST_F(DsfXmlParserTest, Errors) {
  const XmlFile file(R"(<Data><Defaults><Parameter Name="Port">1521</Parameter></Defaults>
    <DataBase Name="d" Active="Yes"><Parameter Name="Port">abc</Parameter></DataBase></Data>)");
  ExpectQRError([&] { Parse(file.Path()); }, QRErrorCode::TypeMismatch, "");
  EXPECT_EQ(m_Driver.ch_size(), 1u);  // appended before the error, and kept
  // Patterns are compiled when first tried: an invalid one behind a match does no harm.
  const XmlFile databases(R"(<Data><DataBase Name="db1" Active="Yes"/></Data>)");
  EXPECT_NO_THROW(Parse(databases.Path(), {"db.*", "db("}));
  ExpectQRError([&] { Parse(databases.Path(), {"x", "db("}); }, QRErrorCode::InvalidPattern, "db(");
}

}  // namespace
