// Lifecycle of the manager and the start-up sequence over the main file.
#include <gtest/gtest.h>

#include "support/manager_fixture.h"

namespace {

using Node = ConfigManager::Node;
using Field = ConfigManager::Field;

// Instance needs a manager (260); a second Initialize raises 259 and keeps the first; Destroy
// may be repeated; initialising again reads the files again.
TEST_F(ManagerTest, Lifecycle) {
  EXPECT_EQ(CatchQRError([] { ConfigManager::Instance(); }).Code(), 260);
  m_Install.WriteBase("<Parameter Name=\"Marker\">1</Parameter>\n");
  ConfigManager& first = Init();
  EXPECT_EQ(CatchQRError([] { ConfigStartup::Initialize(Initialization::Library); }).Code(), 259);
  EXPECT_EQ(&ConfigManager::Instance(), &first);
  EXPECT_EQ(Value<std::int32_t>("\\Quorin\\DBDrivers", "Marker"), 1);
  ConfigStartup::Destroy();
  ConfigStartup::Destroy();
  EXPECT_EQ(CatchQRError([] { ConfigManager::Instance(); }).Code(), 260);
  m_Install.WriteBase("<Parameter Name=\"Marker\">2</Parameter>\n");
  Init();
  EXPECT_EQ(Value<std::int32_t>("\\Quorin\\DBDrivers", "Marker"), 2);
}

TEST_F(ManagerTest, TreeShapeAfterStartup) {
  Registry::SetParameter("B Param", "b");
  Registry::SetParameter("A Param", "a");
  m_Install.WriteBase();
  ConfigManager& manager = Init();
  EXPECT_EQ(Children("\\Quorin"),
            (std::vector<std::string>{"DBDrivers", "Traces", "ActiveDataSources", "Localization"}));
  const Node& root = manager.GetTree().Find(manager.Root()).value();
  std::vector<std::string> fields;
  for (const Field& f : root) {
    EXPECT_EQ(f.ValueType(), Field::String) << f.Name();
    fields.push_back(f.Name());
  }
  EXPECT_EQ(fields, (std::vector<std::string>{"A Param", "B Param", "Config Directory"}));
  EXPECT_EQ(CatchQRError([&] {
              manager.GetTree().Find(ConfigManager::NodePath("\\Quorin\\Drivers defaults"));
            }).Code(),
            5);
  EXPECT_EQ(manager.ConfigFilePath(m_Install.Dir()).toString(), m_Install.Path("qr.cfg"));
}

struct FailureCase {
  const char* name;
  std::function<void(TempInstallation&)> breakIt;
  std::int32_t code;
  std::string argument;    // relative to the installation; empty for none
  std::string diagnostic;  // what an observer is told: "kind file:line"
};

// Every failure of the start-up reaches the host as a file code with its path or as 10, leaves
// no manager and no key table, and a repaired installation then loads. An observer, even one
// that keeps going, changes none of that and is told the cause where it stands.
TEST_F(ManagerTest, FailedStartupLeavesNothingBehind) {
  const std::vector<FailureCase> cases = {
      {"missing main file", [](TempInstallation& i) { i.Remove("qr.cfg"); }, 264, "qr.cfg",
       "missing-file qr.cfg:0"},
      {"malformed main file",
       [](TempInstallation& i) { i.Write("qr.cfg", "<Configuration><Settings>"); }, 265, "qr.cfg",
       "xml-error qr.cfg:1"},
      {"main file pops an empty node stack",
       [](TempInstallation& i) {
         i.Write("qr.cfg", TempInstallation::MainFile("", "<Traces><Trace Name=\"T\"/></Traces>"));
       },
       267, "", "structure qr.cfg:"},
      {"no locale for the running platform",
       [](TempInstallation& i) {
         std::string file = TempInstallation::MainFile();
         const auto first = file.find("  <Locale>");
         file.erase(first, file.rfind("</Locale>\n") + 10 - first);
         i.Write("qr.cfg", file);
       },
       10, "", "no-locale qr.cfg:0"},
      {"no platform section",
       [](TempInstallation& i) { i.Write("platform.csl", "[Elsewhere]\nA = B\n"); }, 10, "",
       "charset-list platform.csl:0"},
      {"setup extension of another type",
       [](TempInstallation& i) {
         i.Write("qr.cfg", TempInstallation::MainFile().replace(
                               TempInstallation::MainFile().find(">setup<"), 7, ">1<"));
       },
       10, "", "value-type qr.cfg:"},
      {"missing setup directory", [](TempInstallation& i) { i.Remove("setup"); }, -1, "",
       "missing-file setup:0"},
      {"no configuration directory",
       [](TempInstallation&) {
         Registry::ClearParameters();
         unsetenv("QR_CONFIG_DIR");
       },
       10, "", "missing-setting :0"},
  };
  for (const FailureCase& c : cases) {
    for (int observed = 0; observed < 3; ++observed) {
      SCOPED_TRACE(std::string(c.name) + (observed == 0   ? ""
                                          : observed == 1 ? ", observed"
                                                          : ", observed, keeping going"));
      m_Install.WriteBase();
      c.breakIt(m_Install);
      RecordingObserver observer;
      observer.KeepGoing = observed == 2;
      const auto initialize = [&] {
        if (observed == 0) {
          ConfigStartup::Initialize(Initialization::Library);
        } else {
          ConfigStartup::Initialize(Initialization::Library, observer);
        }
      };
      if (c.code < 0) {
        EXPECT_ANY_THROW(initialize());
      } else {
        QRError error = CatchQRError(initialize);
        EXPECT_EQ(error.Code(), c.code);
        EXPECT_EQ(error.Argument().str(), c.argument.empty() ? "" : m_Install.Path(c.argument));
      }
      if (observed > 0) {
        // The line is checked where the case gives one.
        bool told = false;
        for (const std::string& d : observer.Diagnostics)
          told = told || d.rfind(c.diagnostic, 0) == 0;
        EXPECT_TRUE(told) << ::testing::PrintToString(observer.Diagnostics);
      }
      EXPECT_EQ(CatchQRError([] { ConfigManager::Instance(); }).Code(), 260);
      EXPECT_FALSE(ConfigKeys::Exists());
      Registry::SetParameter("Config Directory", m_Install.Dir());
    }
    m_Install.WriteBase();
    EXPECT_NO_THROW(Init());
    ConfigStartup::Destroy();
  }
}

// An observer that asks for values gets every field with the chain of values it replaced:
// a mode section's override on top of the setting, a database parameter on top of its
// defaults, the start-up's fall-backs on top of the main file's defaults.
TEST_F(ManagerTest, ValueOrigins) {
  m_Install.WriteBase(
      "<Parameter Name=\"Timeout\">30</Parameter>\n"
      "<Library>\n<Parameter Name=\"Timeout\">60</Parameter>\n</Library>\n",
      "<NetworkLayer Name=\"D\" Implementation=\"C\"/>",
      "<DriverDefaults>\n<Parameter Name=\"Status\">7</Parameter>\n"
      "</DriverDefaults>\n");
  m_Install.Write("setup/d.setup",
                  "<S><NetworkLayer Name=\"D\"/><Directory>d</Directory>"
                  "<DataFileName>d</DataFileName></S>");
  m_Install.Write("d/d.dsf",
                  "<A>\n<Defaults>\n<Parameter Name=\"Port\">1</Parameter>\n</Defaults>\n"
                  "<DataBase Name=\"db\" Active=\"Yes\">\n<Parameter Name=\"Port\">2</Parameter>\n"
                  "</DataBase>\n</A>\n");
  RecordingObserver observer;
  observer.Values = true;
  ConfigStartup::Initialize(Initialization::Library, observer);
  const auto has = [&](const std::string& chain) {
    for (const std::string& origin : observer.Origins)
      if (origin == chain) return true;
    return false;
  };
  EXPECT_TRUE(has("\\Quorin\\DBDrivers|Timeout <= 60@qr.cfg:19 <= 30@qr.cfg:17"))
      << ::testing::PrintToString(observer.Origins);
  EXPECT_TRUE(has("\\Quorin\\DBDrivers\\D\\db|Port <= 2@d.dsf:6 <= 1@d.dsf:3"));
  EXPECT_TRUE(has("\\Quorin\\DBDrivers\\D\\db|Status <= 0@:0 <= 7@qr.cfg:23"));
  EXPECT_TRUE(has("\\Quorin\\DBDrivers\\D\\db|Directory <= d@d.setup:1"));
}

// The mode selects its section of the main file; the trace groups reach the Traces node (the
// reader's tests hold the details of both).
TEST_F(ManagerTest, ModeSectionsAndTraces) {
  const std::string settings =
      "<Parameter Name=\"A\">5</Parameter>\n"
      "<Library>\n<Parameter Name=\"A\">7</Parameter>\n<Parameter "
      "Name=\"New\">1</Parameter>\n</Library>\n"
      "<Server>\n<Parameter Name=\"A\">9</Parameter>\n</Server>\n";
  const std::string traces =
      "<Traces Active=\"No\">\n<Trace Name=\"G\" Active=\"Yes\">\n<Trace Name=\"P\" "
      "Active=\"Yes\"/>\n</Trace>\n</Traces>\n";
  m_Install.WriteBase(settings, "", traces);
  for (auto [mode, expected] :
       {std::pair{Initialization::Library, 7}, {Initialization::Server, 9}}) {
    SCOPED_TRACE(mode);
    Init(mode);
    EXPECT_EQ(Value<std::int32_t>("\\Quorin\\DBDrivers", "A"), expected);
    EXPECT_FALSE(ConfigManager::Instance()
                     .GetTree()
                     .Find(ConfigManager::NodePath("\\Quorin\\DBDrivers"))
                     .value()
                     .Exists("New"));
    EXPECT_FALSE(Value<bool>("\\Quorin\\Traces", "Active"));
    EXPECT_TRUE(Value<bool>("\\Quorin\\Traces\\G", "P"));
    ConfigStartup::Destroy();
  }
}

TEST_F(ManagerTest, LocaleTablesByMode) {
  m_Install.WriteBase();
  ConfigManager& library = Init(Initialization::Library);
  EXPECT_EQ(library.GetPlatformLocales("TestOS").count("fr_FR"), 1u);
  EXPECT_EQ(CatchQRError([&] { library.GetPlatformLocales("OtherOS"); }).Code(), 268);
  ConfigStartup::Destroy();
  ConfigManager& server = Init(Initialization::Server);
  EXPECT_EQ(server.GetPlatformLocales("OtherOS").count("fr_FR"), 1u);
  EXPECT_EQ(server.GetPlatformLocales("OtherOS").count("en"), 0u);
  QRError error = CatchQRError([&] { server.GetPlatformLocales("Nowhere"); });
  EXPECT_EQ(error.Code(), 268);
  EXPECT_EQ(error.Argument().str(), "Nowhere");
}

}  // namespace
