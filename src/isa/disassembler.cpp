// SPDX-License-Identifier: MIT
#include "isa/disassembler.h"

#include <algorithm>
#include <optional>
#include <string_view>

#include "isa/instruction_table.h"

namespace brevant::isa {
namespace {

using base::Address;

// How a mode's operands are written. A letter or digit below stands for a value, all else for
// itself:
//   b  the bit number          1 2  the value of that byte of the instruction (0 is the first)
//   w  the word in the instruction's last two bytes
//   t  the branch target; the offset is the last byte
//   i j e  as 1 2 w, where the value is the address of data and not a number or an offset
// Each value is shown as its symbol's name, or in hexadecimal without prefix or leading zeros.
constexpr std::array<std::string_view, kModeCount> kOperandLayouts{
    "b,i,t",     // BitTestBranch
    "b,i",       // BitSetClear
    "$i,$t",     // CompareBranchDirect
    "#$1,$t",    // CompareBranchImmediate
    "$1,X+,$t",  // CompareBranchIndexed8PostInc
    "X+,$t",     // CompareBranchIndexedPostInc
    "$2,SP,$t",  // CompareBranchStack8
    "$i,$t",     // DecBranchDirect
    "$t",        // DecBranchRegister
    "X,$t",      // DecBranchIndexed
    "$1,X,$t",   // DecBranchIndexed8
    "$2,SP,$t",  // DecBranchStack8
    "i",         // Direct
    "e",         // Extended
    "#1",        // Immediate
    "#w",        // Immediate16
    "",          // Inherent
    ",X",        // Indexed
    "1,X",       // Indexed8
    "w,X",       // Indexed16
    "i,j",       // MoveDirectDirect
    "i,X+",      // MoveDirectPostInc
    "#1,j",      // MoveImmediateDirect
    "X+,i",      // MovePostIncDirect
    "",          // Illegal
    "t",         // Relative
    "2,SP",      // Stack8
    "w,SP",      // Stack16
};

// A layout shows each byte behind the opcode once, so its letters account for the mode's length.
constexpr bool LayoutsFitTheLengths() {
  for (std::size_t mode = 0; mode < kOperandLayouts.size(); ++mode) {
    const std::string_view layout = kOperandLayouts[mode];
    int bytes = layout.find("SP") == std::string_view::npos ? 1 : 2;
    for (char c : layout) {
      const bool word = c == 'w' || c == 'e';
      const bool byte = c == '1' || c == '2' || c == 'i' || c == 'j' || c == 't';
      bytes += word ? 2 : byte ? 1 : 0;
    }
    if (bytes != kModeLengths[mode]) return false;
  }
  return true;
}
static_assert(LayoutsFitTheLengths());

constexpr char kHexDigits[] = "0123456789abcdef";

void AppendHex(std::string& line, std::uint32_t value, int min_digits) {
  char digits[8];
  int start = 8;
  do {
    digits[--start] = kHexDigits[value & 15];
    value >>= 4;
  } while (value != 0 || 8 - start < min_digits);
  line.append(digits + start, static_cast<std::size_t>(8 - start));
}

void AppendNamed(std::string& line, Address value, std::optional<std::string_view> name) {
  if (name) {
    line += *name;
  } else {
    AppendHex(line, base::Low16(value), 1);
  }
}

void AppendOperands(std::string& line, const Instruction& instruction, const SymbolNames& symbols) {
  const std::string_view layout =
      kOperandLayouts[static_cast<std::size_t>(instruction.entry().mode())];
  if (layout.empty()) return;
  const base::Bytes code = instruction.code();
  const auto byte = [code](char c, char first) {
    return code[static_cast<std::size_t>(c - first) + 1];
  };
  const Address word = code.size() < 2 ? 0 : base::Word(code[code.size() - 2], code.back());
  const auto append = [&](Address value) {
    AppendNamed(line, value, symbols.FindSymbolName(value));
  };
  const auto append_data = [&](Address value) {
    AppendNamed(line, value, symbols.FindDataName(value));
  };
  line += '\t';
  for (char c : layout) {
    switch (c) {
      case 'b':
        line += static_cast<char>('0' + (code[0] >> 1 & 7));
        break;
      case '1':
      case '2':
        append(byte(c, '1'));
        break;
      case 'i':
      case 'j':
        append_data(byte(c, 'i'));
        break;
      case 'w':
        append(word);
        break;
      case 'e':
        append_data(word);
        break;
      case 't':
        append(instruction.BranchTarget());
        break;
      default:
        line += c;
    }
  }
}

// Six address digits, a space and three characters a byte; the label follows at this column.
std::size_t HeaderSize(std::size_t length) {
  return 7 + 3 * length;
}
// A text that ends before this column is followed by a tab, a longer one by a space.
constexpr std::size_t kLabelColumn = 21;

void AppendHeader(std::string& line, const Instruction& instruction) {
  AppendHex(line, instruction.address, 6);
  for (const std::uint8_t byte : instruction.code()) {
    const char text[] = {' ', kHexDigits[byte >> 4 & 15], kHexDigits[byte & 15]};
    line.append(text, 3);
  }
}

}  // namespace

std::string Disassemble(const Instruction& instruction, const SymbolNames& symbols) {
  const Entry entry = instruction.entry();
  std::string line;
  line.reserve(64);
  AppendHeader(line, instruction);
  if (entry.illegal()) return line += "\tIlligal command";
  line += ' ';
  // An address of more than six digits takes its extra room from the bytes.
  line.resize(std::min(line.size(), HeaderSize(instruction.code().size())));
  if (const auto label = symbols.FindSymbolName(instruction.address)) {
    line += *label;
    line += ':';
  }
  line += line.size() <= kLabelColumn ? '\t' : ' ';
  line += MnemonicName(entry.mnemonic());
  AppendOperands(line, instruction, symbols);
  return line;
}

}  // namespace brevant::isa
