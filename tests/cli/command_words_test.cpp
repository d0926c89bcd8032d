// SPDX-License-Identifier: MIT
#include "cli/command_words.h"

#include <gtest/gtest.h>

namespace brevant::cli {
namespace {

using Words = std::vector<std::string>;

TEST(CommandWords, SplitsAtBlanksKeepsQuotesAndDropsComments) {
  EXPECT_EQ(SplitWords("  read\t80 10 # the variables").value, (Words{"read", "80", "10"}));
  EXPECT_EQ(SplitWords("load \"my program#1.s19\"\r").value, (Words{"load", "my program#1.s19"}));
  EXPECT_EQ(SplitWords("load \"\"").value, (Words{"load", ""}));
  EXPECT_TRUE(SplitWords("   ").value.empty());
  EXPECT_FALSE(SplitWords("load \"half").ok());
}

}  // namespace
}  // namespace brevant::cli
