// SPDX-License-Identifier: MIT
#include "link/security_code.h"

#include <gtest/gtest.h>

namespace brevant::link {
namespace {

constexpr SecurityCode kCounting{0x01, 0x02, 0x03, 0x04, 0x05, 0x06, 0x07, 0xAB};

TEST(SecurityCode, NeedsEightNumbersInEitherCase) {
  EXPECT_EQ(ParseSecurityCode("01020304050607ab"), kCounting);
  EXPECT_EQ(ParseSecurityCode(" 1 2 3 4 5 6 7 AB and more"), kCounting);
  for (const char* text : {"", "0102030405060", "010203040506x7ab", "01020304050607"}) {
    EXPECT_EQ(ParseSecurityCode(text), std::nullopt) << text;
  }
  EXPECT_EQ(FormatSecurityCode(kCounting), "01020304050607ab");
}

}  // namespace
}  // namespace brevant::link
