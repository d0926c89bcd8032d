// SPDX-License-Identifier: MIT
#include "base/normalised_text.h"

#include <gtest/gtest.h>

namespace brevant::base {
namespace {

TEST(NormaliseText, KeepsWordsOneSpaceApart) {
  EXPECT_EQ(NormaliseText(" ,a,\t b ;c"), "a b");
  EXPECT_EQ(NormaliseText(" , ;"), "");
  EXPECT_EQ(SplitWords("a bc d").size(), 3u);
  EXPECT_TRUE(SplitWords("").empty());
}

}  // namespace
}  // namespace brevant::base
