// SPDX-License-Identifier: MIT
#include "frontend/typed_numbers.h"

#include <gtest/gtest.h>

namespace brevant::frontend {
namespace {

TEST(TypedNumbers, AreTakenInFullOrNotAtAll) {
  EXPECT_EQ(ParseAddress("fFfF").value, 0xFFFFu);
  EXPECT_EQ(ParseAddress("0000000120").value, 0x120u);
  for (const std::string& bad : {std::string("10000"), std::string(), std::string("-1"),
                                 std::string("12g4"), std::string(1000000, 'f')}) {
    EXPECT_FALSE(ParseAddress(bad).ok()) << bad.substr(0, 10);
    EXPECT_LT(ParseAddress(bad).error.size(), 200u);
  }
  EXPECT_EQ(ParseCount("0100", 100).value, 100);
  for (const char* bad : {"", "0", "-5", "101", "5x", "99999999999999999999", "1e3"}) {
    EXPECT_FALSE(ParseCount(bad, 100).ok()) << bad;
  }
}

}  // namespace
}  // namespace brevant::frontend
