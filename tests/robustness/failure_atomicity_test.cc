// A failed start-up leaves nothing behind: no manager (Instance raises 260), no key table, no
// leak (the sanitizer run's leak checker), and the repaired installation then loads. The
// failure reaches the host as a file code with its path, as 10, or as the exception of
// another class; an observer, even one that keeps going, changes none of that and is told
// the cause where it stands. The failures cover every file of the start-up, values read
// late, after a large tree was built, and the configuration directory itself.
#include <gtest/gtest.h>

#include <Poco/Exception.h>

#include <cstdlib>
#include <filesystem>

#include "robustness/startup_probe.h"
#include "support/manager_fixture.h"

namespace {

struct FailureCase {
  const char* Name;
  Initialization::Mode Mode;
  std::function<void(const TempInstallation&)> Break;
  // The rendered QRError ("<code> <argument>"), or "Poco: <name>" for a POCO exception.
  std::string Outcome;
  // The start of what an observer is told ("kind file:line"); "" where not checked.
  std::string Diagnostic = "";
};

void PrintTo(const FailureCase& c, std::ostream* out) {
  *out << c.Name;
}

const FailureCase kCases[] = {
    {"MissingMainFile", Initialization::Library,
     [](const TempInstallation& f) { f.Remove("qr.cfg"); }, "264 @/qr.cfg",
     "missing-file qr.cfg:0"},
    {"MalformedMainFile", Initialization::Library,
     [](const TempInstallation& f) { f.Write(FileKind::Main, "<Configuration><Settings>"); },
     "265 @/qr.cfg", "xml-error qr.cfg:1"},
    {"MainFilePopsAnEmptyNodeStack", Initialization::Library,
     [](const TempInstallation& f) {
       f.WriteDocument(FileKind::Main, "v1", kXmlDeclaration,
                       "<Traces><Trace Name=\"T\"/></Traces>");
     },
     "267", "structure qr.cfg:"},
    {"NoLocaleForTheRunningPlatform", Initialization::Library,
     [](const TempInstallation& f) {
       std::string text = TempInstallation::Document(FileKind::Main, kBaselinePayload);
       const auto first = text.find("  <Locale>");
       f.Write(FileKind::Main, text.erase(first, text.rfind("</Locale>\n") + 10 - first));
     },
     "10", "no-locale qr.cfg:0"},
    {"NoPlatformSection", Initialization::Library,
     [](const TempInstallation& f) { f.Write(FileKind::PlatformList, "[Elsewhere]\nA = B\n"); },
     "10", "charset-list platform.csl:0"},
    {"MalformedPlatformList", Initialization::Server,
     [](const TempInstallation& f) { f.Write(FileKind::PlatformList, "[TestOS\n"); }, "10",
     "charset-list platform.csl:1"},
    {"MalformedSetupFile", Initialization::Library,
     [](const TempInstallation& f) { f.Write(FileKind::Setup, "<Setup><Directory>"); },
     "265 @/setup/Crv.setup"},
    {"MissingDataAccessFile", Initialization::Library,
     [](const TempInstallation& f) { f.Remove(TempInstallation::Relative(FileKind::DataAccess)); },
     "10"},
    {"DataAccessValueOfAnotherType", Initialization::Library,
     [](const TempInstallation& f) {
       f.WriteDocument(FileKind::DataAccess, "v1</Parameter><Parameter Name=\"Unicode\">5");
     },
     "10", "value-type Crv.dsf:9"},
    {"DatabaseOfTheMainFileWithoutDirectory", Initialization::Server,
     [](const TempInstallation& f) {
       f.WriteDocument(FileKind::Main,
                       "v1</Parameter><NetworkLayer Name=\"M\"><DataBase Name=\"x\"/>"
                       "</NetworkLayer><Parameter Name=\"Tail\">");
     },
     "10"},
    {"DriverDefaultsStatusIsABoolean", Initialization::Library,
     [](const TempInstallation& f) {
       f.WriteDocument(
           FileKind::Main, "v1", kXmlDeclaration,
           "<DriverDefaults>" + ParameterElement("Status", "Yes") + "</DriverDefaults>");
     },
     "10"},
    {"NoIgnoreFlagInLibraryMode", Initialization::Library,
     [](const TempInstallation& f) {
       f.WriteEdited(FileKind::Main, ParameterElement("Ignore Driver Load Failure", "No"), "");
     },
     "10"},
    {"SetupExtensionIsAnInteger", Initialization::Server,
     [](const TempInstallation& f) {
       f.WriteEdited(FileKind::Main, ParameterElement("Setup File Extension", "setup"),
                     ParameterElement("Setup File Extension", "12"));
     },
     "10", "value-type qr.cfg:"},
    {"DeepTreeThenPlatformListMissing", Initialization::Library,
     [](const TempInstallation& f) {
       f.WriteDocument(FileKind::Main, "v1", kXmlDeclaration,
                       "<Settings><ActiveDataSources>" +
                           Nest(100000, "NetworkLayer", "", " Name=\"N\"") +
                           "</ActiveDataSources></Settings>");
       f.Remove("platform.csl");
     },
     "10", "missing-file platform.csl:0"},
    {"ConfigDirectoryDoesNotExist", Initialization::Library,
     [](const TempInstallation& f) {
       Registry::SetParameter("Config Directory", f.Path("missing"));
     },
     "264 @/missing/driver.cfg"},
    {"NoConfigurationDirectory", Initialization::Library,
     [](const TempInstallation&) {
       Registry::ClearParameters();
       unsetenv("QR_CONFIG_DIR");
     },
     "10", "missing-setting :0"},
    {"MissingSetupDirectory", Initialization::Library,
     [](const TempInstallation& f) { f.Remove("setup"); }, "Poco: File not found",
     "missing-file setup:0"},
    {"SetupDirectoryIsAFile", Initialization::Library,
     [](const TempInstallation& f) {
       f.Remove("setup");
       f.Write("setup", "not a directory");
     },
     "Poco: Cannot open file"},
};

class FailureAtomicityTest : public ManagerTest, public testing::WithParamInterface<FailureCase> {
 protected:
  StartupProbe m_Probe{m_Install};
};

TEST_P(FailureAtomicityTest, LeavesNothingBehindAndTheRepairedFilesLoad) {
  const FailureCase& c = GetParam();
  for (int observed = 0; observed < 3; ++observed) {
    SCOPED_TRACE(observed == 0 ? "unobserved" : observed == 1 ? "observed" : "keeping going");
    m_Install.WriteBaseline();
    c.Break(m_Install);
    RecordingObserver observer;
    observer.KeepGoing = observed == 2;
    std::string outcome = "no failure";
    try {
      if (observed == 0) {
        ConfigStartup::Initialize(c.Mode);
      } else {
        ConfigStartup::Initialize(c.Mode, observer);
      }
    } catch (const QRError& error) {
      outcome = m_Probe.Render(error);
    } catch (const Poco::Exception& error) {
      outcome = std::string("Poco: ") + error.name();
    }
    EXPECT_EQ(outcome, c.Outcome);
    if (observed > 0 && !c.Diagnostic.empty()) {
      bool told = false;
      for (const std::string& d : observer.Diagnostics)
        told = told || d.rfind(c.Diagnostic, 0) == 0;
      EXPECT_TRUE(told) << testing::PrintToString(observer.Diagnostics);
    }
    EXPECT_EQ(CatchQRError([] { ConfigManager::Instance(); }).Code(), 260);
    EXPECT_FALSE(ConfigKeys::Exists());

    // Repair: the registry parameter, a stray file where the setup directory belongs, and
    // the baseline files.
    Registry::SetParameter("Config Directory", m_Install.Dir());
    if (std::filesystem::is_regular_file(m_Install.Path("setup"))) m_Install.Remove("setup");
  }
  m_Install.WriteBaseline();
  for (FileKind kind : AllKinds()) {
    SCOPED_TRACE(KindName(kind));
    EXPECT_EQ(m_Probe.Outcome(kind, c.Mode), "ok 'v1'");
  }
}

INSTANTIATE_TEST_SUITE_P(Startup, FailureAtomicityTest, testing::ValuesIn(kCases),
                         testing::PrintToStringParamName());

}  // namespace
