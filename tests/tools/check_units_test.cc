// The checks one by one, on small installations that hold a single problem each.
#include <gtest/gtest.h>

#include <Poco/JSON/Array.h>
#include <Poco/JSON/Object.h>

#include "check/xml_scanner.h"
#include "support/temp_installation.h"
#include "tool_runner.h"

namespace {

using Poco::JSON::Object;

const char* const kDriverList =
    "  <NetworkLayer Name=\"D\" Implementation=\"C\"><Alias>DA</Alias></NetworkLayer>\n";
const char* const kSetup =
    "<Setup>\n  <NetworkLayer Name=\"D\"/>\n  <Directory>d</Directory>\n"
    "  <DataFileName>d</DataFileName>\n</Setup>\n";

// A valid installation of one driver "D" with the data-access file d/d.dsf given here.
void WriteInstallation(const TempInstallation& install, const std::string& dataFile,
                       const std::string& settingsExtra = "", const std::string& mainExtra = "") {
  install.WriteBase(settingsExtra, kDriverList, mainExtra);
  install.Write("setup/d.setup", kSetup);
  install.Write("d/d.dsf", dataFile);
}

struct Case {
  const char* Name;
  std::string MainFile;      // empty: the base main file
  std::string PlatformList;  // empty: the base list
  std::string DataFile;
  std::vector<std::string> Options;
  const char* Severity;
  const char* Kind;
  const char* File;
  int Line;
  const char* Text;
};

// Runs check on the installation and returns the one finding of `kind`, or fails.
Object::Ptr FindingOf(const TempInstallation& install, std::vector<std::string> options,
                      const std::string& kind) {
  options.insert(options.begin(),
                 {"check", "--json", "--platform", "TestOS", "--config-dir", install.Dir()});
  const ToolRun run = RunQrConfig(options);
  auto findings = ParseJson(run.Out).extract<Object::Ptr>()->getArray("findings");
  Object::Ptr found;
  for (std::size_t i = 0; i < findings->size(); ++i) {
    auto finding = findings->getObject(static_cast<unsigned>(i));
    if (finding->getValue<std::string>("kind") != kind) continue;
    EXPECT_TRUE(found.isNull()) << "two findings of " << kind << ":\n" << run.Out;
    found = finding;
  }
  if (found.isNull()) ADD_FAILURE() << "no finding of " << kind << ":\n" << run.Out;
  return found;
}

const std::string kGoodData =
    "<DataAccess>\n  <DataBase Name=\"db\" Active=\"Yes\"/>\n</DataAccess>\n";

TEST(CheckUnitsTest, EachProblemGivesItsFinding) {
  const std::string main = TempInstallation::MainFile();
  const Case cases[] = {
      {"no locale for the platform",
       "<Configuration><Locale><Language>en</Language><CharSet Platform=\"OtherOS\">UTF-8"
       "</CharSet></Locale>" +
           main.substr(main.find("<Settings>")),
       "",
       kGoodData,
       {},
       "error",
       "no-locale",
       "qr.cfg",
       0,
       "platform \"TestOS\""},
      {"a missing setting",
       [&] {
         std::string text = main;
         const std::string line = "    <Parameter Name=\"Config File Extension\">dsf</Parameter>\n";
         return text.erase(text.find(line), line.size());
       }(),
       "",
       kGoodData,
       {},
       "error",
       "missing-setting",
       "qr.cfg",
       11,
       "\"Config File Extension\""},
      {"a single trace outside a group",
       TempInstallation::MainFile("", "<Traces>\n<Trace Name=\"T\" Active=\"Yes\"/>\n</Traces>\n"),
       "",
       kGoodData,
       {},
       "error",
       "structure",
       "qr.cfg",
       19,
       "<Trace Name=\"T\">"},
      {"a mode section value of another type",
       TempInstallation::MainFile(
           "<Library><Parameter Name=\"Ignore Driver Load Failure\">7</Parameter></Library>\n"),
       "",
       kGoodData,
       {},
       "warning",
       "value-type",
       "qr.cfg",
       17,
       "the Long \"7\""},
      {"a parameter after a mode section",
       TempInstallation::MainFile("<Server/>\n<Parameter Name=\"Late\">1</Parameter>\n"),
       "",
       kGoodData,
       {},
       "warning",
       "ignored-element",
       "qr.cfg",
       18,
       "after the <Server>"},
      {"a defaults field of two types",
       TempInstallation::MainFile(
           "", "<DriverDefaults>\n<Parameter Name=\"Status\">Yes</Parameter>\n</DriverDefaults>\n"),
       "",
       kGoodData,
       {},
       "error",
       "value-type",
       "qr.cfg",
       19,
       "\"Status\" both a Bool and a Long"},
      {"no section for the platform",
       "",
       "[OtherOS]\nUTF-8 = UTF-8\n",
       kGoodData,
       {},
       "error",
       "charset-list",
       "platform.csl",
       0,
       "no section for \"TestOS\""},
      {"a malformed platform list",
       "",
       "[TestOS]\nno separator here\n",
       kGoodData,
       {},
       "error",
       "charset-list",
       "platform.csl",
       2,
       "cannot be used"},
      {"a database value of another type than its default",
       "",
       "",
       "<DataAccess>\n<Defaults><Parameter Name=\"Port\">1521</Parameter></Defaults>\n"
       "<DataBase Name=\"db\" Active=\"Yes\">\n  <Parameter Name=\"Port\">abc</Parameter>\n"
       "</DataBase>\n</DataAccess>\n",
       {},
       "error",
       "value-type",
       "d/d.dsf",
       4,
       "is a String, but the field it updates is a Long"},
      {"blanks around a number",
       "",
       "",
       "<DataAccess>\n<DataBase Name=\"db\" Active=\"Yes\">\n"
       "  <Parameter Name=\"Port\"> 5 </Parameter>\n</DataBase>\n</DataAccess>\n",
       {},
       "warning",
       "value-layout",
       "d/d.dsf",
       3,
       "not the Long 5"},
      {"an invalid active pattern",
       "",
       "",
       kGoodData,
       {"--mode", "server", "--active", "D=("},
       "error",
       "database-skipped",
       "d/d.dsf",
       2,
       "pattern \"(\""},
      {"a main-file database without a directory",
       TempInstallation::MainFile(
           "<NetworkLayer Name=\"M\">\n<DataBase Name=\"m\"/>\n</NetworkLayer>\n"),
       "",
       kGoodData,
       {},
       "error",
       "missing-setting",
       "qr.cfg",
       17,
       "database node \"m\""},
      {"a database without Active",
       "",
       "",
       "<DataAccess>\n<DataBase Name=\"db\">\n</DataBase>\n</DataAccess>\n",
       {},
       "warning",
       "database-skipped",
       "d/d.dsf",
       2,
       "no \"Active\" attribute"},
      {"a database name that an alias took",
       "",
       "",
       "<DataAccess>\n<DataBase Name=\"a\" Active=\"Yes\"><Alias>b</Alias></DataBase>\n"
       "<DataBase Name=\"b\" Active=\"Yes\"/>\n</DataAccess>\n",
       {},
       "warning",
       "alias-collision",
       "d/d.dsf",
       3,
       "database name \"b\""},
      {"a database declared twice",
       "",
       "",
       "<DataAccess>\n<DataBase Name=\"a\" Active=\"Yes\"/>\n"
       "<DataBase Name=\"a\" Active=\"Yes\"/>\n</DataAccess>\n",
       {},
       "warning",
       "alias-collision",
       "d/d.dsf",
       3,
       "declared again"},
      {"extensions written as a number",
       "",
       "",
       "<DataAccess>\n<DataBase Name=\"db\" Active=\"Yes\">\n"
       "<Parameter Name=\"Extensions\">12</Parameter>\n</DataBase>\n</DataAccess>\n",
       {},
       "warning",
       "value-type",
       "d/d.dsf",
       3,
       "\"Extensions\" of the database \"db\""},
      {"a table file without its section",
       "",
       "",
       "<DataAccess>\n<DataBase Name=\"db\" Active=\"Yes\">\n"
       "<Parameter Name=\"CharSet Table\">t</Parameter>\n</DataBase>\n</DataAccess>\n",
       {},
       "warning",
       "charset-table",
       "d/d.dsf",
       2,
       "no [CharSets] section"},
      {"a main file that is not XML",
       "<Configuration>\n  <Settings>\n</Configuration>\n",
       "",
       kGoodData,
       {},
       "error",
       "xml-error",
       "qr.cfg",
       3,
       "mismatched tag"},
  };
  for (const Case& test : cases) {
    SCOPED_TRACE(test.Name);
    TempInstallation install;
    WriteInstallation(install, test.DataFile);
    if (!test.MainFile.empty()) install.Write("qr.cfg", test.MainFile);
    if (!test.PlatformList.empty()) install.Write("platform.csl", test.PlatformList);
    install.Write("d/t.csl", "[Other]\nUTF-8 = X\n");
    const Object::Ptr finding = FindingOf(install, test.Options, test.Kind);
    if (finding.isNull()) continue;
    EXPECT_EQ(test.Severity, finding->getValue<std::string>("severity"));
    EXPECT_EQ(test.File, finding->getValue<std::string>("file"));
    EXPECT_EQ(test.Line, finding->isNull("line") ? 0 : finding->getValue<int>("line"));
    const std::string message = finding->getValue<std::string>("message");
    EXPECT_NE(std::string::npos, message.find(test.Text)) << message;
  }
}

TEST(CheckUnitsTest, BrokenDriverFileIsAWarningWhenFailuresAreIgnored) {
  TempInstallation install;
  WriteInstallation(install, "<DataAccess>\n<DataBase>\n</DataAccess>\n");
  EXPECT_EQ("error", FindingOf(install, {}, "xml-error")->getValue<std::string>("severity"));
  install.Write("qr.cfg", TempInstallation::MainFile().replace(
                              TempInstallation::MainFile().find(">No<"), 4, ">Yes<"));
  EXPECT_EQ("warning", FindingOf(install, {}, "xml-error")->getValue<std::string>("severity"));
  EXPECT_EQ(
      "warning",
      FindingOf(install, {"--mode", "server"}, "xml-error")->getValue<std::string>("severity"));
}

TEST(CheckUnitsTest, ScannerCountsLinesAcrossCommentsInstructionsAndText) {
  TempInstallation install;
  install.Write("a.xml",
                "<?xml version=\"1.0\"?>\n<!-- a comment\n over two lines -->\n<Root>\n"
                "  <?pi data\n   more?>\n  <A x=\"1\">text &amp; more</A>\n  <![CDATA[\n]]>\n"
                "  <B>\n    value\n  </B>\n</Root>\n");
  const qrconfig::XmlDocument document = qrconfig::XmlScanner::Scan(install.Path("a.xml"));
  ASSERT_TRUE(document.Complete());
  ASSERT_EQ(3u, document.Elements.size());
  EXPECT_EQ(4u, document.Elements[0].Line);
  EXPECT_EQ(7u, document.Elements[1].Line);
  EXPECT_EQ("text & more", document.Elements[1].Text);
  EXPECT_EQ((std::vector<std::pair<std::string, std::string>>{{"x", "1"}}),
            document.Elements[1].Attributes);
  EXPECT_EQ(10u, document.Elements[2].Line);
  EXPECT_EQ("    value  ", document.Elements[2].Text);
  EXPECT_EQ("\n    value\n  ", document.Elements[2].RawText);
  EXPECT_EQ(0u, document.Elements[1].Parent);

  install.Write("b.xml", "<Root>\n  <A>\n</Root>\n");
  const qrconfig::XmlDocument broken = qrconfig::XmlScanner::Scan(install.Path("b.xml"));
  EXPECT_EQ(46, broken.Error.Code);
  EXPECT_EQ(3u, broken.Error.Line);
  EXPECT_EQ(3u, broken.Error.Column);
  EXPECT_EQ(2u, broken.Elements.size());
}

struct DriverFilesCase {
  const char* Name;
  std::string DriverList;
  std::string Setup;      // setup/d.setup
  std::string Localised;  // driveren.cfg
  const char* Severity;
  const char* Kind;
  const char* File;
  int Line;
  const char* Text;
};

TEST(CheckUnitsTest, DriverListSetupAndLocalisedFiles) {
  const std::string list = kDriverList;
  const DriverFilesCase cases[] = {
      {"a driver declared twice", list + list, kSetup, "", "warning", "alias-collision",
       "driver.cfg", 3, "declared again"},
      {"a driver name that an alias took",
       list + "  <NetworkLayer Name=\"DA\" Implementation=\"C\"/>\n", kSetup, "", "warning",
       "alias-collision", "driver.cfg", 3, "driver name \"DA\" is already an alias of \"D\""},
      {"an alias over several lines",
       "  <NetworkLayer Name=\"D\" Implementation=\"C\">\n    <Alias>\n      DX\n    </Alias>\n"
       "  </NetworkLayer>\n",
       kSetup, "", "warning", "value-layout", "driver.cfg", 3, "alias \"DX\""},
      {"a setup file without a driver", list, "<Setup>\n  <Directory>d</Directory>\n</Setup>\n", "",
       "warning", "setup-no-driver", "setup/d.setup", 0, "names no driver"},
      {"a setup file of a misspelt driver", list,
       "<Setup>\n  <NetworkLayer Name=\"d\"/>\n</Setup>\n", "", "warning", "unknown-driver",
       "setup/d.setup", 2, "(did you mean \"D\"?)"},
      {"a setup value on the next line", list,
       "<Setup>\n  <NetworkLayer Name=\"D\"/>\n  <Directory>\n    d\n  </Directory>\n</Setup>\n",
       "", "warning", "value-layout", "setup/d.setup", 3, "the reader takes \"    d  \""},
      {"texts without a name message", list, kSetup,
       "<Texts>\n  <NetworkLayer Name=\"D\">\n    <Message id=\"Comment\">c</Message>\n"
       "  </NetworkLayer>\n</Texts>\n",
       "warning", "ignored-element", "driveren.cfg", 2, "no message with id \"Name\""},
      {"a message over several lines", list, kSetup,
       "<Texts>\n  <NetworkLayer Name=\"D\">\n    <Message id=\"Name\">\n      Dee\n"
       "    </Message>\n  </NetworkLayer>\n</Texts>\n",
       "warning", "value-layout", "driveren.cfg", 3, "only its last line is kept"},
  };
  for (const DriverFilesCase& test : cases) {
    SCOPED_TRACE(test.Name);
    TempInstallation install;
    install.WriteBase("", test.DriverList);
    install.Write("setup/d.setup", test.Setup);
    install.Write("d/d.dsf", kGoodData);
    if (!test.Localised.empty()) install.Write("driveren.cfg", test.Localised);
    const Object::Ptr finding = FindingOf(install, {}, test.Kind);
    if (finding.isNull()) continue;
    EXPECT_EQ(test.Severity, finding->getValue<std::string>("severity"));
    EXPECT_EQ(test.File, finding->getValue<std::string>("file"));
    EXPECT_EQ(test.Line, finding->isNull("line") ? 0 : finding->getValue<int>("line"));
    const std::string message = finding->getValue<std::string>("message");
    EXPECT_NE(std::string::npos, message.find(test.Text)) << message;
  }
}

TEST(CheckUnitsTest, MissingDirectoryReportsTheFilesTheStartUpNeeds) {
  const ToolRun run = RunQrConfig({"check", "--json", "--config-dir", "/nonexistent/qr"});
  EXPECT_EQ(1, run.Status);
  auto findings = ParseJson(run.Out).extract<Object::Ptr>()->getArray("findings");
  std::vector<std::string> missing;
  for (std::size_t i = 0; i < findings->size(); ++i) {
    auto finding = findings->getObject(static_cast<unsigned>(i));
    if (finding->getValue<std::string>("kind") == "missing-file")
      missing.push_back(finding->getValue<std::string>("file"));
  }
  EXPECT_EQ((std::vector<std::string>{"qr.cfg", "driver.cfg", "setup"}), missing);
}

TEST(CheckUnitsTest, DeeplyNestedFilesNeitherCrashNorGrowQuadratically) {
  TempInstallation install;
  std::string deep;
  for (int i = 0; i < 20000; ++i) deep += "<NetworkLayer Name=\"n\">";
  for (int i = 0; i < 20000; ++i) deep += "</NetworkLayer>";
  install.WriteBase("<ActiveDataSources>" + deep + "</ActiveDataSources>\n");
  for (const std::vector<std::string>& line : std::vector<std::vector<std::string>>{
           {"tree"}, {"tree", "--json"}, {"check"}, {"check", "--json"}}) {
    SCOPED_TRACE(::testing::PrintToString(line));
    std::vector<std::string> arguments = line;
    arguments.insert(arguments.end(), {"--platform", "TestOS", "--config-dir", install.Dir()});
    const ToolRun run = RunQrConfig(arguments);
    EXPECT_EQ(0, run.Status) << run.Err;
    EXPECT_LT(run.Out.size(), 20u << 20);
  }
}

}  // namespace
