// A failed start-up leaves nothing behind: no manager (Instance raises 260), no key table,
// no leak (the sanitizer run's leak checker), and the repaired installation then loads. The
// failures here are those the start-up tests do not cover: failures of the driver-side
// files, of the platform list's syntax, of values read late, after a large tree was built,
// and an exception of another class.
#include <gtest/gtest.h>

#include <Poco/Exception.h>
#include <Poco/File.h>

#include "robustness/probe_installation.h"
#include "support/manager_fixture.h"

namespace {

struct FailureCase {
  const char* Name;
  Initialization::Mode Mode;
  std::function<void(const ProbeInstallation&)> Break;
  // The rendered QRError ("<code> <argument>"), or "Poco: <name>" for a POCO exception.
  std::string Outcome;
};

void PrintTo(const FailureCase& c, std::ostream* out) {
  *out << c.Name;
}

const std::vector<FailureCase> kCases = {
    {"MalformedSetupFile", Initialization::Library,
     [](const ProbeInstallation& f) { f.Write(FileKind::Setup, "<Setup><Directory>"); },
     "265 @/setup/crv.setup"},
    {"MissingDataAccessFile", Initialization::Library,
     [](const ProbeInstallation& f) { Poco::File(f.Path(FileKind::DataAccess)).remove(); }, "10"},
    {"DataAccessValueOfAnotherType", Initialization::Library,
     [](const ProbeInstallation& f) {
       f.WriteDocument(FileKind::DataAccess, "v1</Parameter><Parameter Name=\"Unicode\">5");
     },
     "10"},
    {"DriverListIsADirectory", Initialization::Server,
     [](const ProbeInstallation& f) {
       Poco::File(f.Path(FileKind::DriverList)).remove();
       Poco::File(f.Path(FileKind::DriverList)).createDirectories();
     },
     "264 @/driver.cfg"},
    {"DriverListUnpairedSurrogate", Initialization::Server,
     [](const ProbeInstallation& f) {
       f.Write(FileKind::DriverList, std::string("\xFF\xFE<\0a\0>\0\x00\xD8x\0<\0/\0a\0>\0", 20));
     },
     "266 @/driver.cfg"},
    {"EntityBombInTheMainFile", Initialization::Library,
     [](const ProbeInstallation& f) { f.WriteDocument(FileKind::Main, "&l10;", BillionLaughs()); },
     "267 @/qr.cfg"},
    {"MalformedPlatformList", Initialization::Server,
     [](const ProbeInstallation& f) {
       f.Write(FileKind::PlatformList, "[TestOS\nUTF-8 = UTF-8\n");
     },
     "10"},
    {"DatabaseOfTheMainFileWithoutDirectory", Initialization::Server,
     [](const ProbeInstallation& f) {
       f.WriteDocument(FileKind::Main,
                       "v1</Parameter><NetworkLayer Name=\"M\"><DataBase Name=\"x\"/>"
                       "</NetworkLayer><Parameter Name=\"Tail\">");
     },
     "10"},
    {"DriverDefaultsStatusIsABoolean", Initialization::Library,
     [](const ProbeInstallation& f) {
       f.WriteDocument(
           FileKind::Main, "v1", kXmlDeclaration,
           "<DriverDefaults>" + ParameterElement("Status", "Yes") + "</DriverDefaults>");
     },
     "10"},
    {"NoIgnoreFlagInLibraryMode", Initialization::Library,
     [](const ProbeInstallation& f) {
       f.WriteEdited(FileKind::Main, ParameterElement("Ignore Driver Load Failure", "No"), "");
     },
     "10"},
    {"SetupExtensionIsAnInteger", Initialization::Server,
     [](const ProbeInstallation& f) {
       f.WriteEdited(FileKind::Main, ParameterElement("Setup File Extension", "setup"),
                     ParameterElement("Setup File Extension", "12"));
     },
     "10"},
    {"ConfigDirectoryDoesNotExist", Initialization::Library,
     [](const ProbeInstallation& f) {
       Registry::SetParameter("Config Directory", f.Install().Path("missing"));
     },
     "264 @/missing/driver.cfg"},
    {"DeepTreeThenPlatformListMissing", Initialization::Library,
     [](const ProbeInstallation& f) {
       f.WriteDocument(FileKind::Main, "v1", kXmlDeclaration,
                       "<Settings><ActiveDataSources>" +
                           Nest(100000, "NetworkLayer", "", " Name=\"N\"") +
                           "</ActiveDataSources></Settings>");
       Poco::File(f.Path(FileKind::PlatformList)).remove();
     },
     "10"},
    {"SetupDirectoryIsAFile", Initialization::Library,
     [](const ProbeInstallation& f) {
       Poco::File(f.Install().Path("setup")).remove(true);
       f.Install().Write("setup", "not a directory");
     },
     "Poco: Cannot open file"},
};

class FailureAtomicityTest : public ManagerTest, public testing::WithParamInterface<FailureCase> {
 protected:
  // Runs Initialize and renders what it threw; "no failure" when it did not.
  std::string FailedStartup(Initialization::Mode mode) {
    try {
      ConfigStartup::Initialize(mode);
    } catch (const QRError& error) {
      return m_Files.Render(error);
    } catch (const Poco::Exception& error) {
      return std::string("Poco: ") + error.name();
    }
    return "no failure";
  }

  ProbeInstallation m_Files{m_Install};
};

TEST_P(FailureAtomicityTest, LeavesNothingBehindAndTheRepairedFilesLoad) {
  const FailureCase& c = GetParam();
  m_Files.WriteBaseline();
  c.Break(m_Files);
  EXPECT_EQ(FailedStartup(c.Mode), c.Outcome);
  EXPECT_EQ(CatchQRError([] { ConfigManager::Instance(); }).Code(), 260);
  EXPECT_FALSE(ConfigKeys::Exists());

  // Repair: the registry parameter, a stray file where the setup directory belongs, and the
  // baseline files.
  Registry::SetParameter("Config Directory", m_Install.Dir());
  if (Poco::File(m_Install.Path("setup")).isFile()) Poco::File(m_Install.Path("setup")).remove();
  m_Files.WriteBaseline();
  for (FileKind kind : AllKinds()) {
    SCOPED_TRACE(KindName(kind));
    EXPECT_EQ(m_Files.Outcome(kind, c.Mode), "ok 'v1'");
  }
}

INSTANTIATE_TEST_SUITE_P(Startup, FailureAtomicityTest, testing::ValuesIn(kCases),
                         [](const testing::TestParamInfo<FailureCase>& info) {
                           return std::string(info.param.Name);
                         });

}  // namespace
