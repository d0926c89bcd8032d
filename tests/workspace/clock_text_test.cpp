// SPDX-License-Identifier: MIT
#include "workspace/clock_text.h"

#include <gtest/gtest.h>

namespace brevant::workspace {
namespace {

TEST(ClockText, CountsTwiceTwelveHours) {
  EXPECT_EQ(ClockText(23, 5, 9), "11:05:09 PM");
  EXPECT_EQ(ClockText(0, 0, 0), "12:00:00 AM");
  EXPECT_EQ(ClockText(9, 5, 0), " 9:05:00 AM");
  EXPECT_EQ(ClockText(12, 59, 59), "12:59:59 PM");
  EXPECT_EQ(ClockText(13, 0, 1), " 1:00:01 PM");
}

}  // namespace
}  // namespace brevant::workspace
