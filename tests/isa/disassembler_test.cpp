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

// Knows another name of what lies at $12 and $1234.
class Registers final : public SymbolNames {
 public:
  std::optional<std::string_view> FindSymbolName(base::Address) const override { return {}; }
  std::optional<std::string_view> FindDataName(base::Address address) const override {
    if (address == 0x12) return "DATA";
    return address == 0x1234 ? std::optional<std::string_view>("FAR") : std::nullopt;
  }
  std::optional<base::Address> FindSymbolAddress(std::string_view) const override { return {}; }
};

TEST(Disassembler, NamesDataWhereAnOperandIsItsAddressAndNothingElse) {
  const Golden rows[] = {
      {0x0012, {0xB6, 0x12}, "000012 b6 12 \tLDA\tDATA"},
      {0x0100, {0xC6, 0x12, 0x34}, "000100 c6 12 34 \tLDA\tFAR"},
      {0x0100, {0xA6, 0x12}, "000100 a6 12 \tLDA\t#12"},
      {0x0100, {0x45, 0x12, 0x34}, "000100 45 12 34 \tLDHX\t#1234"},
      {0x0100, {0xE6, 0x12}, "000100 e6 12 \tLDA\t12,X"},
      {0x0100, {0xD6, 0x12, 0x34}, "000100 d6 12 34 \tLDA\t1234,X"},
      {0x0100, {0x9E, 0xE6, 0x12}, "000100 9e e6 12 \tLDA\t12,SP"},
      {0x0100, {0x61, 0x12, 0xFD}, "000100 61 12 fd \tCBEQ\t$12,X+,$100"},
      {0x0010, {0x20, 0x00}, "000010 20 00 \tBRA\t12"},
      {0x0100, {0x16, 0x12}, "000100 16 12 \tBSET\t3,DATA"},
      {0x0100, {0x06, 0x12, 0xFD}, "000100 06 12 fd \tBRSET\t3,DATA,100"},
      {0x0100, {0x31, 0x12, 0xFD}, "000100 31 12 fd \tCBEQ\t$DATA,$100"},
      {0x0100, {0x3B, 0x12, 0xFD}, "000100 3b 12 fd \tDBNZ\t$DATA,$100"},
      {0x0100, {0x6E, 0x12, 0x12}, "000100 6e 12 12 \tMOV\t#12,DATA"},
      {0x0100, {0x4E, 0x12, 0x13}, "000100 4e 12 13 \tMOV\tDATA,13"},
      {0x0100, {0x5E, 0x12}, "000100 5e 12 \tMOV\tDATA,X+"},
      {0x0100, {0x7E, 0x12}, "000100 7e 12 \tMOV\tX+,DATA"},
  };
  for (const Golden& row : rows) {
    EXPECT_EQ(Disassemble(InstructionAt(row.address, row.bytes), Registers()), row.line);
  }
}

}  // namespace
}  // namespace brevant::isa
