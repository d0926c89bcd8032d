// SPDX-License-Identifier: MIT
#include "isa/disassembler.h"

#include <gtest/gtest.h>

#include <vector>

#include "isa/symbol_list.h"

namespace brevant::isa {
namespace {

struct Golden {
  base::Address address;
  std::vector<std::uint8_t> bytes;
  const char* line;
};

TEST(Disassembler, PrintsEveryModeInItsOwnForm) {
  const Golden rows[] = {
      {0xF000, {0x06, 0x80, 0xFD}, "00f000 06 80 fd \tBRSET\t3,80,f000"},
      {0xF000, {0x0F, 0x00, 0x80}, "00f000 0f 00 80 \tBRCLR\t7,0,ef83"},
      {0xF000, {0x1E, 0x40}, "00f000 1e 40 \tBSET\t7,40"},
      {0xF000, {0x31, 0x80, 0x10}, "00f000 31 80 10 \tCBEQ\t$80,$f013"},
      {0xF000, {0x51, 0x05, 0x7F}, "00f000 51 05 7f \tCBEQX\t#$5,$f082"},
      {0xF000, {0x61, 0x12, 0x00}, "00f000 61 12 00 \tCBEQ\t$12,X+,$f003"},
      {0xF000, {0x71, 0xFE}, "00f000 71 fe \tCBEQ\tX+,$f000"},
      {0xF000, {0x9E, 0x61, 0x04, 0x02}, "00f000 9e 61 04 02 \tCBEQ\t$4,SP,$f006"},
      {0xF000, {0x3B, 0x80, 0xFD}, "00f000 3b 80 fd \tDBNZ\t$80,$f000"},
      {0xF000, {0x4B, 0x00}, "00f000 4b 00 \tDBNZA\t$f002"},
      {0xF000, {0x7B, 0x01}, "00f000 7b 01 \tDBNZ\tX,$f003"},
      {0xF000, {0x6B, 0xFF, 0x01}, "00f000 6b ff 01 \tDBNZ\t$ff,X,$f004"},
      {0xF000, {0x9E, 0x6B, 0xFF, 0xFC}, "00f000 9e 6b ff fc \tDBNZ\t$ff,SP,$f000"},
      {0x12, {0xB6, 0x08}, "000012 b6 08 \tLDA\t8"},
      {0xF002, {0xCD, 0xF1, 0x00}, "00f002 cd f1 00 \tJSR\tf100"},
      {0xF000, {0xA6, 0x12}, "00f000 a6 12 \tLDA\t#12"},
      {0xF000, {0x45, 0x00, 0x0A}, "00f000 45 00 0a \tLDHX\t#a"},
      {0xF000, {0x9D}, "00f000 9d \tNOP"},
      {0xF000, {0xF6}, "00f000 f6 \tLDA\t,X"},
      {0xF000, {0xE6, 0x00}, "00f000 e6 00 \tLDA\t0,X"},
      {0xF000, {0xDC, 0x12, 0x34}, "00f000 dc 12 34 \tJMP\t1234,X"},
      {0xF000, {0x4E, 0x80, 0x81}, "00f000 4e 80 81 \tMOV\t80,81"},
      {0xF000, {0x5E, 0x80}, "00f000 5e 80 \tMOV\t80,X+"},
      {0xF000, {0x6E, 0x05, 0x80}, "00f000 6e 05 80 \tMOV\t#5,80"},
      {0xF000, {0x7E, 0x80}, "00f000 7e 80 \tMOV\tX+,80"},
      {0xF007, {0x27, 0xFE}, "00f007 27 fe \tBEQ\tf007"},
      {0xF004, {0x9E, 0xE6, 0x01}, "00f004 9e e6 01 \tLDA\t1,SP"},
      {0xF004, {0x9E, 0xDF, 0x01, 0x02}, "00f004 9e df 01 02 \tSTX\t102,SP"},
      {0xFFFF, {0x20, 0x10}, "00ffff 20 10 \tBRA\t11"},
      {0x0000, {0x20, 0x80}, "000000 20 80 \tBRA\tff82"},
      {0x12345678, {0x9D}, "12345678 9\tNOP"},
  };
  for (const Golden& row : rows) {
    EXPECT_EQ(Disassemble(InstructionAt(row.address, row.bytes), NoSymbols()), row.line);
  }
}

TEST(Disassembler, PutsSymbolsForEveryOperandAndLabelsInFront) {
  const SymbolList symbols{{"START", 0xF000}, {"twelve", 0x12},    {"again", 0x12},
                           {"port", 0x0},     {"LABEL67", 0xF010}, {"LABEL678", 0xF020},
                           {"low", 0x0011},   {"bit", 7}};
  const Golden rows[] = {
      {0xF000, {0xA6, 0x12}, "00f000 a6 12 START:\tLDA\t#twelve"},
      {0xF003, {0x31, 0x12, 0xFA}, "00f003 31 12 fa \tCBEQ\t$twelve,$START"},
      {0xF004, {0x1E, 0x00}, "00f004 1e 00 \tBSET\t7,port"},
      {0xF006, {0x4E, 0x12, 0x13}, "00f006 4e 12 13 \tMOV\ttwelve,13"},
      // The label ends at column 21, then one further.
      {0xF010, {0xB6, 0x12}, "00f010 b6 12 LABEL67:\tLDA\ttwelve"},
      {0xF020, {0xB6, 0x12}, "00f020 b6 12 LABEL678: LDA\ttwelve"},
      // A target that has wrapped is printed in 16 bits but is no symbol's address.
      {0xFFFF, {0x20, 0x10}, "00ffff 20 10 \tBRA\t11"},
      {0xF030, {0x9E, 0xD6, 0xF0, 0x10}, "00f030 9e d6 f0 10 \tLDA\tLABEL67,SP"},
      // What is no instruction has one byte and no label.
      {0xF000, {0x9E, 0x70}, "00f000 9e\tIlligal command"},
      {0xF000, {0x9E, 0xDC}, "00f000 9e\tIlligal command"},
      {0xF000, {0x32}, "00f000 32\tIlligal command"},
  };
  for (const Golden& row : rows) {
    EXPECT_EQ(Disassemble(InstructionAt(row.address, row.bytes), symbols), row.line);
  }
}

}  // namespace
}  // namespace brevant::isa
