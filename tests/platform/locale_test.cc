#include <gtest/gtest.h>

#include "qr_config/platform/orv_locale.h"

namespace {

TEST(LocaleTest, IdentifiersSplitAtTheFirstUnderscore) {
  const char* cases[][3] = {{"fr", "CA", "fr_CA"},
                            {"en", "", "en"},
                            {"", "CA", "_CA"},
                            {"zh", "Hant_TW", "zh_Hant_TW"},
                            {"", "", ""}};
  for (const auto& c : cases) {
    EXPECT_EQ(c[2], orv_locale::makeLocaleId(c[0], c[1]));
    EXPECT_EQ(std::make_pair(std::string(c[0]), std::string(c[1])),
              orv_locale::splitLocaleId(c[2]));
  }
}

}  // namespace
