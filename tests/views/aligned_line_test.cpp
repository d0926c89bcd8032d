// SPDX-License-Identifier: MIT
#include "views/aligned_line.h"

#include <gtest/gtest.h>

namespace brevant::views {
namespace {

TEST(AlignedText, BeginsAllMnemonicsInOneColumn) {
  EXPECT_EQ(AlignedText("000100 45 02 3f \tLDHX\t#23f", 3),
            "000100 45 02 3f                      LDHX   #23f");
  EXPECT_EQ(AlignedText("000100 9d START:\tNOP", 1), "000100 9d           START            NOP");
  EXPECT_EQ(AlignedText("000100 cd 01 13 _a_name_of_some_length: JSR\tAB,X", 3),
            "000100 cd 01 13     _a_name_of_som.. JSR    AB,X");
  EXPECT_EQ(AlignedText("000100 8d\tIlligal command", 1),
            "000100 8d                            Illigal command");
  EXPECT_EQ(AlignedText("00100: ****", 0), "00100: ****");
}

}  // namespace
}  // namespace brevant::views
