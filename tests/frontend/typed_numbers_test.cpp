// SPDX-License-Identifier: MIT
#include "frontend/typed_numbers.h"

#include <gtest/gtest.h>

namespace brevant::frontend {
namespace {

TEST(TypedNumbers, ReadsAddressesAndSaysWhatIsWrongWithThem) {
  EXPECT_EQ(ParseAddress("0").value, 0u);
  EXPECT_EQ(ParseAddress("fFfF").value, 0xFFFFu);
  EXPECT_EQ(ParseAddress("0000000120").value, 0x120u);
  EXPECT_EQ(ParseAddress("10000").error, "address 10000 is beyond FFFF");
  EXPECT_FALSE(ParseAddress("").ok());
  EXPECT_FALSE(ParseAddress("-1").ok());
  EXPECT_FALSE(ParseAddress("12g4").ok());
  EXPECT_FALSE(ParseAddress(std::string(1000000, 'f')).ok());
  EXPECT_LT(ParseAddress(std::string(1000000, 'x')).error.size(), 200u);
}

TEST(TypedNumbers, CountsAreDecimalAndBounded) {
  EXPECT_EQ(ParseCount("10", 100).value, 10);
  EXPECT_EQ(ParseCount("0100", 100).value, 100);
  for (const char* bad : {"", "0", "-5", "101", "5x", "99999999999999999999", "1e3"}) {
    EXPECT_FALSE(ParseCount(bad, 100).ok()) << bad;
  }
}

}  // namespace
}  // namespace brevant::frontend
