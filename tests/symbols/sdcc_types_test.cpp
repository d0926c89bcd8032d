// SPDX-License-Identifier: MIT
#include "symbols/sdcc_types.h"

#include <gtest/gtest.h>

namespace brevant::symbols {
namespace {

TEST(SdccTypes, ChainsReadAsC) {
  struct Row {
    const char* chain;
    const char* text;
    int size = 0;
  };
  const Row rows[] = {{"SC:U", "unsigned char"},
                      {"SC:S", "signed char"},
                      {"SI:U", "unsigned int"},
                      {"SL:S", "long"},
                      {"SI:S", "long long", 8},
                      {"DA2d,DA3d,SI:U", "unsigned long long[2][3]", 48},
                      {"DA2d,DG,SI:S", "int *[2]", 16},
                      {"SF:S", "float"},
                      {":S", "_Bool"},
                      {"STpt:S", "struct pt"},
                      {"STun:S", "union un"},
                      {"ST__00000000:S", "struct"},
                      {"DA8d,SC:U", "unsigned char[8]"},
                      {"DA2d,DA3d,SI:S", "int[2][3]"},
                      {"DG,SC:U", "unsigned char *"},
                      {"DG,DG,STpt:S", "struct pt **"},
                      {"DA4d,DG,SI:S", "int *[4]"},
                      {"DG,DA4d,SI:S", "int (*)[4]"},
                      {"DF,SV:S", "void ()"},
                      {"DC,DF,SI:S", "int (*)()"},
                      {"DA3d,DC,DF,SI:S", "int (*[3])()"},
                      {"", ""},
                      {"SQ:U", "SQ:U"},
                      {"DA8d", "DA8d"},
                      {"DAd", "DAd"},
                      {"Dxyz,SC:U", "Dxyz,SC:U"}};
  const auto is_union = [](std::string_view tag) { return tag == "un"; };
  for (const Row& row : rows)
    EXPECT_EQ(SdccTypeText(row.chain, row.size, is_union), row.text) << row.chain;
}

TEST(SdccTypes, UnionIsToldByItsOffsets) {
  EXPECT_TRUE(
      IsUnionRecord("[({0}S:S$i$0_0$0({2}SI:S),Z,0,0)({0}S:S$c$0_0$0({2}DA2d,SC:U),Z,0,0)]"));
  EXPECT_FALSE(IsUnionRecord("[({0}S:S$x$0_0$0({1}SC:U),Z,0,0)({1}S:S$y$0_0$0({2}SI:S),Z,0,0)]"));
  EXPECT_FALSE(IsUnionRecord("[({0}S:S$a$0_0$0({2}SI:S),Z,0,0)]")) << "one member tells nothing";
  EXPECT_FALSE(
      IsUnionRecord("[({0}S:S$a$0_0$0({1}SB0$3:U),Z,0,0)({0}S:S$b$0_0$0({1}SB3$5:U),Z,0,0)]"));
}

}  // namespace
}  // namespace brevant::symbols
