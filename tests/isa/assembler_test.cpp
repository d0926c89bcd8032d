// SPDX-License-Identifier: MIT
#include "isa/assembler.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <vector>

#include "isa/disassembler.h"
#include "isa/legal_opcodes.h"
#include "isa/symbol_list.h"

namespace brevant::isa {
namespace {

using Code = std::vector<int>;

// The bytes, or nothing for a line that is rejected.
Code Assemble(std::string_view text, base::Address address = 0xF000,
              const SymbolNames& symbols = NoSymbols()) {
  const auto result = AssembleLine(text, address, symbols);
  if (!result) return {};
  return {result->code().begin(), result->code().end()};
}

// Rows of address, line and bytes; what is no instruction has no bytes.
int CheckRows(const char* name) {
  std::ifstream file(std::string(BREVANT_TEST_DATA "/isa/") + name);
  std::string address;
  std::string text;
  std::string bytes;
  int rows = 0;
  while (std::getline(file, address, '\t') && std::getline(file, text, '\t') &&
         std::getline(file, bytes)) {
    Code expected;
    std::istringstream fields(bytes);
    for (int byte = 0; fields >> std::hex >> byte;) expected.push_back(byte);
    EXPECT_EQ(Assemble(text, static_cast<base::Address>(std::stoi(address, nullptr, 16))), expected)
        << text;
    ++rows;
  }
  return rows;
}

TEST(Assembler, GivesTheBytesOfAnotherAssemblerForEveryOpcode) {
  EXPECT_EQ(CheckRows("assembler_golden.tsv"), 290);
}

TEST(Assembler, ReadsLinesAsPeopleTypeThemAndRejectsWhatIsNoInstruction) {
  EXPECT_EQ(CheckRows("assembler_lines.tsv"), 52);
  EXPECT_EQ(Assemble("mov\t#$5 , $80\r"), (Code{0x6E, 0x05, 0x80}));
  EXPECT_EQ(Assemble(""), Code());
}

TEST(Assembler, SaysWhyALineIsNoInstruction) {
  struct Case {
    const char* line;
    const char* why;
  };
  for (const Case& c : {
           Case{" NOP", "A line begins with the name of its instruction."},
           Case{"LDQ 12", "LDQ is no instruction of the HC08."},
           Case{"LDA #NOSUCH", "#NOSUCH is neither a hexadecimal number nor a symbol."},
           Case{"NOP NOP", "NOP is neither a hexadecimal number nor a symbol."},
           Case{"NOP 1", "This instruction does not take such operands."},
           Case{"BRA 300", "0300 is out of reach: from here a branch gets to 0082 to 0181."},
           Case{"BSET 8,80", "8 is no bit: they count from 0 to 7."},
           Case{"NEG 1234", "1234 does not fit into a byte, which is all there is room for here."},
       }) {
    std::string why;
    EXPECT_FALSE(AssembleLine(c.line, 0x0100, NoSymbols(), &why)) << c.line;
    EXPECT_EQ(why, c.why);
  }
}

// What must come back when the instruction's own text is assembled at its address. The same bytes,
// but for two cases: 16-bit operands below 0x100 take the short form where there is one (extended
// to direct, indexed and stack-relative from 16 to 8 bits), and a branch that wraps round the
// address space is out of reach.
Code ExpectedBack(const Instruction& instruction) {
  const Mode mode = instruction.entry().mode();
  Code code(instruction.code().begin(), instruction.code().end());
  const std::size_t last = code.size() - 1;
  const bool is_long = mode == Mode::Extended || mode == Mode::Indexed16 || mode == Mode::Stack16;
  if (is_long && code[last - 1] == 0) {
    code[last - 2] += mode == Mode::Extended ? -0x10 : 0x10;
    code.erase(code.end() - 2);
  }
  const bool branches = mode == Mode::Relative || mode == Mode::BitTestBranch ||
                        (mode >= Mode::CompareBranchDirect && mode <= Mode::DecBranchStack8);
  if (branches) {
    const int offset = code[last] < 0x80 ? code[last] : code[last] - 0x100;
    const int target = static_cast<int>(instruction.end()) + offset;
    if (target < 0 || target > 0xFFFF) code.clear();
  }
  return code;
}

TEST(Assembler, TakesBackWhateverTheDisassemblerPrints) {
  const std::uint8_t operands[] = {0x00, 0x05, 0x7F, 0x80, 0xFF};
  int lines = 0;
  for (base::Address address : {0x0000, 0x0070, 0x8000, 0xFFE0}) {
    for (const auto& opcode : LegalOpcodes()) {
      for (std::uint8_t first : operands) {
        for (std::uint8_t second : operands) {
          std::vector<std::uint8_t> bytes = opcode;
          bytes.insert(bytes.end(), {first, second});
          const Instruction instruction = InstructionAt(address, bytes);
          const std::string line = Disassemble(instruction, NoSymbols());
          ASSERT_EQ(Assemble(EditableText(line), address), ExpectedBack(instruction)) << line;
          ++lines;
        }
      }
    }
  }
  EXPECT_EQ(lines, 4 * 290 * 25);
}

struct Row {
  const char* text;
  Code code;
};

TEST(Assembler, FindsSymbolsWhereNumbersCouldStand) {
  const SymbolList symbols{{"loop", 0xF000}, {"count", 0x80},   {"table", 0x1234},
                           {"beef", 1},      {"_main", 0xF040}, {"far", 0xF0C8}};
  const Row rows[] = {{"BRA loop", {0x20, 0xFE}},
                      {"bra $_MAIN", {0x20, 0x3E}},
                      {"BRA far", {}},
                      {"LDA Count", {0xB6, 0x80}},
                      {"LDA TABLE,X", {0xD6, 0x12, 0x34}},
                      {"LDHX #table", {0x45, 0x12, 0x34}},
                      {"BRSET 0,count,loop", {0x00, 0x80, 0xFD}},
                      {"LDA BEEF", {0xC6, 0xBE, 0xEF}},
                      {"LDA ##count", {}}};
  for (const Row& row : rows) EXPECT_EQ(Assemble(row.text, 0xF000, symbols), row.code) << row.text;
}

TEST(Assembler, OffersTheInstructionOfADisassembledLine) {
  const std::pair<const char*, const char*> rows[] = {
      {"00f000 a6 12 \tLDA\t#12", "LDA  #12"},
      {"00f000 9d \tNOP", "NOP"},
      {"00f000 a6 12 START:\tLDA\t#12", "LDA  #12"},
      {"00f020 b6 12 LABEL678: LDA\tx  ", "LDA  x"},
      {"00f020 9d a_very_long_label_indeed: NOP", "NOP"},
      {"00f000 b6 12 \tLDA\tclass::x", "LDA  class::x"},
      {"00f000 32\tIlligal command", "Illigal command"},
      {"00f000", ""},
      {"0f000: ****", ""},
      {"00f000 b6 12 LABEL678:", ""},
      {"", ""}};
  for (const auto& [line, text] : rows) EXPECT_EQ(EditableText(line), text) << line;
}

}  // namespace
}  // namespace brevant::isa
