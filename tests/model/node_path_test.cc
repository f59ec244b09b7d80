#include "qr_config/config/model/node_path.h"

#include <gtest/gtest.h>

#include <utility>

namespace {

using NodePath = ConfigManagerTypes::NodePath;

TEST(NodePathTest, WorkedExamples) {
  NodePath localization("\\Quorin\\Localization");
  NodePath moved(std::move(localization));
  EXPECT_STREQ(static_cast<const char*>(localization), "\\Quorin\\Localization");
  localization += "Crv";
  EXPECT_EQ(localization.levels(), moved.levels() + 1);
  EXPECT_EQ(localization[2], "Crv");
  const NodePath made("\\Quorin\\ActiveDataSources", "Crv");
  moved = std::move(made);  // moving copies
  EXPECT_EQ(made.levels(), 3);
  EXPECT_EQ(NodePath("").levels(), 0);
}

}  // namespace
