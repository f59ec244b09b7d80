// Many threads asking at once for locales and localised driver texts. Run under
// ThreadSanitizer in CI.
#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "support/manager_fixture.h"

namespace {

constexpr int kThreads = 8;

class ConcurrencyTest : public ManagerTest {
 protected:
  void SetUp() override {
    std::string drivers, texts;
    for (const char* name : {"A", "B", "C"}) {
      drivers += std::string("<NetworkLayer Name=\"") + name + "\" Implementation=\"C\"/>\n";
      texts += std::string("<NetworkLayer Name=\"") + name + "\">\n<Message id=\"Name\">" + name +
               " text</Message>\n</NetworkLayer>\n";
      m_Install.WriteDriver(name, "");
    }
    m_Install.WriteBase("", drivers,
                        "<Locale>\n<Language>de</Language>\n<CharSet>UTF-8</CharSet>\n</Locale>\n");
    for (const char* locale : {"en", "fr", "de", "es"})
      m_Install.Write(std::string("driver") + locale + ".cfg", "<T>\n" + texts + "</T>\n");
  }

  // Runs `work(i)` on kThreads threads released at once.
  template <typename Work>
  void RunTogether(Work work) {
    std::atomic<bool> go{false};
    std::vector<std::thread> threads;
    for (int i = 0; i < kThreads; ++i)
      threads.emplace_back([&, i] {
        while (!go.load()) std::this_thread::yield();
        work(i);
      });
    go = true;
    for (std::thread& t : threads) t.join();
  }
};

TEST_F(ConcurrencyTest, SameNewLocaleIsLoadedOnceAndShared) {
  ConfigManager& manager = Init();
  const Quorin::LocaleDescriptor fr("fr", "", "UTF-8");
  std::vector<const void*> nodes(kThreads);
  RunTogether([&](int i) { nodes[i] = &manager.GetLocalizedDriver(i % 2 ? "A" : "B", fr); });
  for (const char* driver : {"A", "B", "C"})
    EXPECT_EQ(Children(std::string("\\Quorin\\Localization\\") + driver),
              std::vector<std::string>{"fr"})
        << driver;
  for (int i = 0; i < kThreads; ++i) EXPECT_EQ(nodes[i], nodes[i % 2]);
}

TEST_F(ConcurrencyTest, DifferentLocalesAndLocaleDescriptors) {
  ConfigManager& manager = Init();
  const char* languages[] = {"en", "fr", "de", "es"};
  std::vector<const Quorin::LocaleDescriptor*> descriptors(kThreads);
  std::vector<std::int32_t> separatorCodes(kThreads);
  RunTogether([&](int i) {
    const char* language = languages[i % 4];
    manager.GetLocalizedDriver("C", Quorin::LocaleDescriptor(language, "", ""));
    descriptors[i] = &manager.GetLocale(i % 2 ? "en" : "de", "XX");
    // A name holding the separator while other threads load locales: unknown at once, without
    // walking the locale nodes being appended.
    try {
      manager.GetLocalizedDriver(std::string("C\\") + language,
                                 Quorin::LocaleDescriptor("es", "", ""));
    } catch (const QRError& error) {
      separatorCodes[i] = error.Code();
    }
  });
  EXPECT_EQ(separatorCodes, std::vector<std::int32_t>(kThreads, 22));
  EXPECT_EQ(Children("\\Quorin\\Localization\\C"),
            (std::vector<std::string>(Children("\\Quorin\\Localization\\A"))));
  EXPECT_EQ(Children("\\Quorin\\Localization\\C").size(), 4u);
  for (int i = 0; i < kThreads; ++i) EXPECT_EQ(descriptors[i], descriptors[i % 2]);
  EXPECT_EQ(descriptors[0]->Language(), "de");
  EXPECT_EQ(descriptors[1]->Country(), "XX");
}

}  // namespace
