// SPDX-License-Identifier: MIT
#include "base/text_number.h"

#include <gtest/gtest.h>

#include <climits>

namespace brevant::base {
namespace {

TEST(TextNumber, ReadsHexadecimalFields) {
  EXPECT_TRUE(IsHexField(""));
  EXPECT_EQ(ParseHex(""), 0u);
  EXPECT_TRUE(IsHexField("09afAF"));
  EXPECT_EQ(ParseHex("fFfe"), 0xFFFEu);
  EXPECT_EQ(ParseHex("123456789"), 0x23456789u) << "32 bits";
  for (const char* bad : {"g", "0x1", " 1", "1 ", "-1", "/", ":", "@", "`"}) {
    EXPECT_FALSE(IsHexField(bad)) << bad;
  }
  EXPECT_EQ(ParseHexExactly("ff", 2), 0xFFu);
  EXPECT_FALSE(ParseHexExactly("", 2));
  EXPECT_FALSE(ParseHexExactly("100", 2));
  EXPECT_FALSE(ParseHexExactly("1g", 2));
}

TEST(TextNumber, ReadsAndWritesBinaryFields) {
  EXPECT_TRUE(IsBinaryField("0110"));
  EXPECT_FALSE(IsBinaryField("012"));
  EXPECT_FALSE(IsBinaryField("1\xE9"));
  EXPECT_EQ(ParseBinary("10110"), 0x16u);
  EXPECT_EQ(FormatBinary(0x16, 6), "010110");
  EXPECT_EQ(FormatBinary(0xFFu, 4), "1111");
}

TEST(TextNumber, TakesLeadingDecimalDigitsAndSaturates) {
  EXPECT_EQ(ParseLeadingDecimal(" \t42,7"), 42);
  EXPECT_EQ(ParseLeadingDecimal("-17x"), -17);
  EXPECT_EQ(ParseLeadingDecimal("x1"), 0);
  EXPECT_EQ(ParseLeadingDecimal("- 1"), 0);
  EXPECT_EQ(ParseLeadingDecimal("99999999999999999999999"), INT_MAX);
  EXPECT_EQ(ParseLeadingDecimal("-99999999999999999999999"), INT_MIN);
}

TEST(TextNumber, ScansHexadecimalConversionsFromTheFront) {
  std::string_view text = "C3 a\t1234";
  EXPECT_EQ(ScanHex(text, 2), 0xC3u);
  EXPECT_EQ(ScanHex(text, 2), 0xAu);
  EXPECT_EQ(ScanHex(text, 2), 0x12u);
  EXPECT_EQ(text, "34");
  text = "  ,1";
  EXPECT_FALSE(ScanHex(text, 4));
  text = "";
  EXPECT_FALSE(ScanHex(text, 4));
}

}  // namespace
}  // namespace brevant::base
