// The localisation services: file names, localised driver texts loaded once per locale.
// (Character-set tables and missing or broken localised files: the robustness tables and
// the tool tests.)
#include <gtest/gtest.h>
#include <unistd.h>

#include "support/manager_fixture.h"

namespace {

class LoadedTest : public ManagerTest {
 protected:
  // Drivers "Crv" and "Plm" with English and French texts; Plm's have no name.
  void SetUp() override {
    m_Install.WriteBase("",
                        "<NetworkLayer Name=\"Crv\" Implementation=\"C\"/>\n"
                        "<NetworkLayer Name=\"Plm\" Implementation=\"C\"/>\n");
    m_Install.WriteDriver("Crv", "");
    m_Install.WriteDriver("Plm", "");
    m_Install.Write(
        "driveren.cfg",
        "<T>\n<NetworkLayer Name=\"Crv\">\n<Message id=\"Name\">Corvane</Message>\n"
        "<Message id=\"Comment\">native</Message>\n</NetworkLayer>\n"
        "<NetworkLayer Name=\"Plm\">\n<Message id=\"Comment\">no name: skipped</Message>\n"
        "</NetworkLayer>\n<NetworkLayer Name=\"Unknown\">\n"
        "<Message id=\"Name\">x</Message>\n</NetworkLayer>\n</T>\n");
    m_Install.Write(
        "driverfr.cfg",
        "<T>\n<NetworkLayer Name=\"Crv\">\n<Message id=\"Name\">Corvane (fr)</Message>\n"
        "<Message id=\"Comment\">natif</Message>\n</NetworkLayer>\n</T>\n");
  }
};

TEST_F(LoadedTest, LocalizeFileNameTriesThreeNames) {
  ConfigManager& manager = Init();
  std::string path;
  const auto localized = [&](const char* language, const char* country) -> const std::string& {
    path = m_Install.Path("driver");
    return manager.LocalizeFileName(Quorin::LocaleDescriptor(language, country, ""), "cfg", path);
  };
  EXPECT_EQ(&localized("fr", "CA"), &path);  // rewritten in place
  EXPECT_EQ(path, m_Install.Path("driverfr.cfg"));
  EXPECT_EQ(localized("de", ""), m_Install.Path("driveren.cfg"));
  EXPECT_EQ(localized("xx", "YY"), m_Install.Path("driveren.cfg"));
  m_Install.Write("driverfr_CA.cfg", "<T/>");
  EXPECT_EQ(localized("fr", "CA"), m_Install.Path("driverfr_CA.cfg"));
}

TEST_F(LoadedTest, LocalizedDriverLoadsOncePerLocale) {
  ConfigManager& manager = Init();
  const Quorin::LocaleDescriptor en("en", "", "UTF-8");
  tree_node<ConfigManager::Node>& node = manager.GetLocalizedDriver("Crv", en);
  EXPECT_EQ(node.value().Name(), "en");
  orv_utf8string text;
  node.value().Find("External Name").Value(text);
  EXPECT_EQ(text.str(), "Corvane");
  node.value().Find("Comment").Value(text);
  EXPECT_EQ(text.str(), "native");
  EXPECT_EQ(&manager.GetLocalizedDriver("Crv", en), &node);

  // Plm has no record with a name: the file was read, the node is still missing.
  EXPECT_EQ(CatchQRError([&] { manager.GetLocalizedDriver("Plm", en); }).Code(), 50);
  EXPECT_EQ(Children("\\Quorin\\Localization\\Crv"), (std::vector<std::string>{"en", "en"}));

  QRError unknown = CatchQRError([&] { manager.GetLocalizedDriver("Nope", en); });
  EXPECT_EQ(unknown.Code(), 22);
  EXPECT_EQ(unknown.Argument().str(), "Nope");

  EXPECT_EQ(
      manager.GetLocalizedDriver("Crv", Quorin::LocaleDescriptor("fr", "BE", "")).value().Name(),
      "fr_BE");
}

TEST_F(LoadedTest, MissingLocalizedFileGives264WithItsNameConvertedWhereItCan) {
  m_Install.Remove("driveren.cfg");
  const std::string odd = m_Install.Dir() + "\xFF";
  ASSERT_EQ(::symlink(m_Install.Dir().c_str(), odd.c_str()), 0);
  Registry::SetParameter("Config Directory", odd);
  for (const auto& [platformList, name] :
       {std::pair(std::string("[TestOS]\nUTF-8 = UTF-8\n"), odd),
        std::pair(std::string("[TestOS]\nL = ISO-8859-1\n"), odd),
        std::pair(std::string("[TestOS]\nUTF-8 = ISO-8859-1\n"), m_Install.Dir() + "\xC3\xBF")}) {
    m_Install.Write("platform.csl", platformList);
    ConfigManager& manager = Init();
    QRError error = CatchQRError(
        [&] { manager.GetLocalizedDriver("Crv", Quorin::LocaleDescriptor("en", "", "")); });
    EXPECT_EQ(error.Code(), 264) << platformList;
    EXPECT_EQ(error.Argument().str(), name + "/driveren.cfg");
    ConfigStartup::Destroy();
  }
  ::unlink(odd.c_str());
}

}  // namespace
