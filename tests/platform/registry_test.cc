#include "qr_config/platform/registry.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

namespace {

// All parameters of a new snapshot as "name=value;" in map order.
std::string Snapshot() {
  Registry registry;
  std::string all, value;
  for (const auto& [name, parameter] : registry.Parameters()) {
    all += name + "=" + parameter.Value(value) + ";";
  }
  return all;
}

TEST(RegistryTest, SnapshotsInNameOrderWithTheEnvironmentAsFallBack) {
  Registry::ClearParameters();
  unsetenv("QR_CONFIG_DIR");
  Registry::SetParameter("b", "2");
  Registry::SetParameter("a", "1");
  Registry::SetParameter("a", "one");
  EXPECT_EQ("a=one;b=2;", Snapshot());
  setenv("QR_CONFIG_DIR", "", 1);
  EXPECT_EQ("a=one;b=2;", Snapshot());
  setenv("QR_CONFIG_DIR", "/from/env", 1);
  EXPECT_EQ("Config Directory=/from/env;a=one;b=2;", Snapshot());
  Registry::SetParameter("Config Directory", "/from/host");
  EXPECT_EQ("Config Directory=/from/host;a=one;b=2;", Snapshot());
  Registry::ClearParameters();
  unsetenv("QR_CONFIG_DIR");
  EXPECT_EQ("", Snapshot());
}

}  // namespace
