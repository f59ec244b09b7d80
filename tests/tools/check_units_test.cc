// The checks one by one, on small installations that hold a single problem each.
#include <gtest/gtest.h>

#include "check/xml_scanner.h"
#include "support/temp_installation.h"
#include "tool_runner.h"

namespace {

const std::string kDriver =
    "  <NetworkLayer Name=\"D\" Implementation=\"C\"><Alias>DA</Alias></NetworkLayer>\n";

// The data-access file with one active database "db" holding `inner` from line 3 on.
std::string Db(const std::string& inner) {
  return "<DataAccess>\n<DataBase Name=\"db\" Active=\"Yes\">\n" + inner +
         "</DataBase>\n</DataAccess>\n";
}
std::string DriverList(const std::string& list) {
  return "<DriverList>\n" + list + "</DriverList>\n";
}

// A valid installation of one driver "D" whose data-access file d/d.dsf holds "db".
void WriteInstallation(const TempInstallation& install) {
  install.WriteBase("", kDriver);
  install.Write("setup/d.setup",
                "<Setup>\n  <NetworkLayer Name=\"D\"/>\n  <Directory>d</Directory>\n"
                "  <DataFileName>d</DataFileName>\n</Setup>\n");
  install.Write("d/d.dsf", Db(""));
}

// Runs check on the installation and returns the one finding of `kind`; fails when there is
// not exactly one.
Found FindingOf(const TempInstallation& install, std::vector<std::string> options,
                const std::string& kind) {
  options.insert(options.begin(),
                 {"check", "--json", "--platform", "TestOS", "--config-dir", install.Dir()});
  const ToolRun run = RunQrConfig(options);
  std::vector<Found> found;
  for (const Found& f : ParseFindings(run.Out)) {
    if (f.Kind == kind) found.push_back(f);
  }
  EXPECT_EQ(1u, found.size()) << "findings of " << kind << ":\n" << run.Out;
  return found.empty() ? Found() : found.front();
}

struct Case {
  const char* Severity;
  const char* Kind;
  const char* Where;  // "file" or "file:line"
  const char* Text;   // a part of the message
  const char* File;   // written over the base installation, unless empty
  std::string Content;
  std::vector<std::string> Options = {};
};

TEST(CheckUnitsTest, EachProblemGivesItsFinding) {
  const std::string main = TempInstallation::MainFile();
  std::string noExtension = main;
  const std::string extension = "    <Parameter Name=\"Config File Extension\">dsf</Parameter>\n";
  noExtension.erase(noExtension.find(extension), extension.size());
  const auto mainWith = [](const std::string& settings, const std::string& after = "") {
    return TempInstallation::MainFile(settings, after);
  };
  const Case cases[] = {
      {"error", "no-locale", "qr.cfg", "platform \"TestOS\"", "qr.cfg",
       "<Configuration><Locale><Language>en</Language><CharSet Platform=\"OtherOS\">"
       "UTF-8</CharSet></Locale>" +
           main.substr(main.find("<Settings>"))},
      {"error", "missing-setting", "qr.cfg:11", "\"Config File Extension\"", "qr.cfg", noExtension},
      {"error", "structure", "qr.cfg:19", "<Trace Name=\"T\">", "qr.cfg",
       mainWith("", "<Traces>\n<Trace Name=\"T\" Active=\"Yes\"/>\n</Traces>\n")},
      {"warning", "value-type", "qr.cfg:17", "the Long \"7\"", "qr.cfg",
       mainWith("<Library><Parameter Name=\"Ignore Driver Load Failure\">7</Parameter>"
                "</Library>\n")},
      {"warning", "ignored-element", "qr.cfg:18", "after the <Server>", "qr.cfg",
       mainWith("<Server/>\n<Parameter Name=\"Late\">1</Parameter>\n")},
      {"error", "value-type", "qr.cfg:19", "\"Status\" both a Bool and a Long", "qr.cfg",
       mainWith("",
                "<DriverDefaults>\n<Parameter Name=\"Status\">Yes</Parameter>\n"
                "</DriverDefaults>\n")},
      {"error", "missing-setting", "qr.cfg:17", "database node \"m\"", "qr.cfg",
       mainWith("<NetworkLayer Name=\"M\">\n<DataBase Name=\"m\"/>\n</NetworkLayer>\n")},
      {"error", "xml-error", "qr.cfg:3", "mismatched tag", "qr.cfg",
       "<Configuration>\n  <Settings>\n</Configuration>\n"},
      {"error", "charset-list", "platform.csl", "no section for \"TestOS\"", "platform.csl",
       "[OtherOS]\nUTF-8 = UTF-8\n"},
      {"error", "charset-list", "platform.csl:2", "cannot be used", "platform.csl",
       "[TestOS]\nno separator here\n"},
      {"error", "value-type", "d/d.dsf:4", "is a String, but the field it updates is a Long",
       "d/d.dsf",
       "<DataAccess>\n<Defaults><Parameter Name=\"Port\">1521</Parameter></Defaults>\n"
       "<DataBase Name=\"db\" Active=\"Yes\">\n  <Parameter Name=\"Port\">abc</Parameter>\n"
       "</DataBase>\n</DataAccess>\n"},
      {"warning", "value-layout", "d/d.dsf:3", "not the Long 5", "d/d.dsf",
       Db("  <Parameter Name=\"Port\"> 5 </Parameter>\n")},
      {"error",
       "database-skipped",
       "d/d.dsf:2",
       "pattern \"(\"",
       "",
       "",
       {"--mode", "server", "--active", "D=("}},
      {"warning", "alias-collision", "d/d.dsf:3", "database name \"b\"", "d/d.dsf",
       "<DataAccess>\n<DataBase Name=\"a\" Active=\"Yes\"><Alias>b</Alias></DataBase>\n"
       "<DataBase Name=\"b\" Active=\"Yes\"/>\n</DataAccess>\n"},
      {"warning", "alias-collision", "d/d.dsf:3", "declared again", "d/d.dsf",
       "<DataAccess>\n<DataBase Name=\"a\" Active=\"Yes\"/>\n"
       "<DataBase Name=\"a\" Active=\"Yes\"/>\n</DataAccess>\n"},
      {"warning", "value-type", "d/d.dsf:3", "\"Extensions\" of the database \"db\"", "d/d.dsf",
       Db("<Parameter Name=\"Extensions\">12</Parameter>\n")},
      {"warning", "charset-table", "d/d.dsf:2", "no [CharSets] section", "d/d.dsf",
       Db("<Parameter Name=\"CharSet Table\">t</Parameter>\n")},
      {"warning", "alias-collision", "driver.cfg:3", "declared again", "driver.cfg",
       DriverList(kDriver + kDriver)},
      {"warning", "alias-collision", "driver.cfg:3",
       "driver name \"DA\" is already an alias of \"D\"", "driver.cfg",
       DriverList(kDriver + "  <NetworkLayer Name=\"DA\" Implementation=\"C\"/>\n")},
      {"warning", "value-layout", "driver.cfg:3", "alias \"DX\"", "driver.cfg",
       DriverList("  <NetworkLayer Name=\"D\" Implementation=\"C\">\n"
                  "    <Alias>\n      DX\n    </Alias>\n  </NetworkLayer>\n")},
      {"warning", "setup-no-driver", "setup/d.setup", "names no driver", "setup/d.setup",
       "<Setup>\n  <Directory>d</Directory>\n</Setup>\n"},
      {"warning", "unknown-driver", "setup/d.setup:2", "(did you mean \"D\"?)", "setup/d.setup",
       "<Setup>\n  <NetworkLayer Name=\"d\"/>\n</Setup>\n"},
      {"warning", "value-layout", "setup/d.setup:3", "the reader takes \"    d  \"",
       "setup/d.setup",
       "<Setup>\n  <NetworkLayer Name=\"D\"/>\n  <Directory>\n    d\n  "
       "</Directory>\n</Setup>\n"},
      {"warning", "ignored-element", "driveren.cfg:2", "no message with id \"Name\"",
       "driveren.cfg",
       "<Texts>\n  <NetworkLayer Name=\"D\">\n    <Message id=\"Comment\">c"
       "</Message>\n  </NetworkLayer>\n</Texts>\n"},
      {"warning", "value-layout", "driveren.cfg:3", "only its last line is kept", "driveren.cfg",
       "<Texts>\n  <NetworkLayer Name=\"D\">\n    <Message id=\"Name\">\n"
       "      Dee\n    </Message>\n  </NetworkLayer>\n</Texts>\n"},
  };
  for (const Case& test : cases) {
    SCOPED_TRACE(std::string(test.Kind) + " " + test.Where + ": " + test.Text);
    TempInstallation install;
    WriteInstallation(install);
    install.Write("d/t.csl", "[Other]\nUTF-8 = X\n");
    if (*test.File != '\0') install.Write(test.File, test.Content);
    const Found finding = FindingOf(install, test.Options, test.Kind);
    EXPECT_EQ(test.Severity, finding.Severity);
    EXPECT_EQ(test.Where,
              finding.File + (finding.Line == 0 ? "" : ":" + std::to_string(finding.Line)));
    EXPECT_NE(std::string::npos, finding.Message.find(test.Text)) << finding.Message;
  }
}

TEST(CheckUnitsTest, BrokenDriverFileIsAWarningWhenFailuresAreIgnored) {
  TempInstallation install;
  WriteInstallation(install);
  install.Write("d/d.dsf", "<DataAccess>\n<DataBase>\n</DataAccess>\n");
  EXPECT_EQ("error", FindingOf(install, {}, "xml-error").Severity);
  install.Write("qr.cfg", TempInstallation::MainFile().replace(
                              TempInstallation::MainFile().find(">No<"), 4, ">Yes<"));
  EXPECT_EQ("warning", FindingOf(install, {}, "xml-error").Severity);
  EXPECT_EQ("warning", FindingOf(install, {"--mode", "server"}, "xml-error").Severity);
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

TEST(CheckUnitsTest, MissingFilesOfAnInstallationAreNamed) {
  TempInstallation install;
  install.Write("qr.cfg", TempInstallation::MainFile());
  const ToolRun run = RunQrConfig({"check", "--json", "--config-dir", install.Dir()});
  EXPECT_EQ(1, run.Status);
  std::vector<std::string> missing;
  for (const Found& f : ParseFindings(run.Out)) {
    if (f.Kind == "missing-file") missing.push_back(f.File);
  }
  EXPECT_EQ((std::vector<std::string>{"driver.cfg", "platform.csl", "setup"}), missing);
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
