// SPDX-License-Identifier: MIT
#include "symbols/sdcc_types.h"

#include <gtest/gtest.h>

#include "base/text_format.h"

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
  Types types;
  SdccTypes chains(types);
  chains.AddRecord("Fm$un[({0}S:S$i$0_0$0({2}SI:S),Z,0,0)({0}S:S$c$0_0$0({2}DA2d,SC:U),Z,0,0)]");
  for (const Row& row : rows) {
    EXPECT_EQ(types.Text(chains.Find(row.chain, row.size, "m")), row.text) << row.chain;
  }
}

TEST(SdccTypes, StructuresHaveTheirMembersAndMayPointAtThemselves) {
  Types types;
  SdccTypes chains(types);
  chains.AddRecord(
      "Fm$node[({0}S:S$key$0_0$0({8}SI:U),Z,0,0)({8}S:S$next$0_0$0({2}DG,STnode:S),Z,0,0)"
      "({10}S:S$lo$0_0$0({1}SB0$3:U),Z,0,0)({10}S:S$hi$0_0$0({1}SB3$5:S),Z,0,0)]");
  chains.AddRecord("Fother$node[({0}S:S$only$0_0$0({1}SC:S),Z,0,0)]");
  for (const char* damaged : {"Fm$a[({0}S:S$", "Fm$b[}S:S$x$({", "Fm$c[({0}S:S$x$0({2}SI"}) {
    chains.AddRecord(damaged);
  }
  const Type array = types[chains.Find("DA3d,STnode:S", 33, "m")];
  EXPECT_EQ(array.count, 3);
  const Type node = types[array.target];
  EXPECT_EQ(node.kind, Type::Kind::Struct);
  EXPECT_EQ(node.size, 11);
  std::string members;
  for (const Member& m : node.members) {
    members +=
        base::Format("%s %s +%d %d/%d\n", types.Text(m.type), m.name, m.offset, m.bit, m.bits);
  }
  EXPECT_EQ(members,
            "unsigned long long key +0 0/0\nstruct node * next +8 0/0\n"
            "unsigned int lo +10 0/3\nint hi +10 3/5\n");
  EXPECT_EQ(types[node.members[1].type].target, array.target);
  EXPECT_EQ(types[chains.Find("STnode:S", 1, "other")].members.size(), 1U);
  for (const char* chain : {"STa:S", "STb:S", "STc:S", "STgone:S"}) {
    EXPECT_EQ(types[chains.Find(chain, 4, "m")].size, 4) << chain;
  }
}

}  // namespace
}  // namespace brevant::symbols
