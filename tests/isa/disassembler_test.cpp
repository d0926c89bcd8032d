// SPDX-License-Identifier: MIT
#include "isa/disassembler.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <vector>

#include "isa/symbol_list.h"

namespace brevant::isa {
namespace {

struct Golden {
  base::Address address;
  std::vector<std::uint8_t> bytes;
  const char* line;
};

// Each line of the file holds the address and the bytes that it is printed for.
TEST(Disassembler, PrintsEveryModeInItsOwnForm) {
  std::ifstream file(BREVANT_TEST_DATA "/isa/disassembly.txt");
  int lines = 0;
  for (std::string line; std::getline(file, line); ++lines) {
    std::istringstream fields(line.substr(0, line.find('\t')));
    base::Address address = 0;
    fields >> std::hex >> address;
    std::vector<std::uint8_t> bytes;
    for (unsigned byte = 0; fields >> byte;) bytes.push_back(base::LowByte(byte));
    EXPECT_EQ(Disassemble(InstructionAt(address, bytes), NoSymbols()), line);
  }
  EXPECT_EQ(lines, 30);
  const auto nop = InstructionAt(0x12345678, std::vector<std::uint8_t>{0x9D});
  EXPECT_EQ(Disassemble(nop, NoSymbols()), "12345678 9\tNOP");
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
