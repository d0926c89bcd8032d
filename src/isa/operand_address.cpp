// SPDX-License-Identifier: MIT
#include "isa/operand_address.h"

#include <array>
#include <string_view>

#include "isa/instruction_table.h"

namespace brevant::isa {
namespace {

// How a mode makes the address of its operand: the values that the letters and digits stand for,
// added up.
//   1 2  that byte of the instruction (0 is the first)
//   w    the word in the instruction's last two bytes
//   x s  H:X, the stack pointer
constexpr std::array<std::string_view, kModeCount> kAddressSums{
    "1",   // BitTestBranch
    "1",   // BitSetClear
    "1",   // CompareBranchDirect
    "",    // CompareBranchImmediate
    "x1",  // CompareBranchIndexed8PostInc
    "x",   // CompareBranchIndexedPostInc
    "s2",  // CompareBranchStack8
    "1",   // DecBranchDirect
    "",    // DecBranchRegister
    "x",   // DecBranchIndexed
    "x1",  // DecBranchIndexed8
    "s2",  // DecBranchStack8
    "1",   // Direct
    "w",   // Extended
    "",    // Immediate
    "",    // Immediate16
    "",    // Inherent
    "x",   // Indexed
    "x1",  // Indexed8
    "xw",  // Indexed16
    "2",   // MoveDirectDirect
    "x",   // MoveDirectPostInc
    "2",   // MoveImmediateDirect
    "1",   // MovePostIncDirect
    "",    // Illegal
    "",    // Relative
    "s2",  // Stack8
    "sw",  // Stack16
};

}  // namespace

base::Address OperandAddress(const Instruction& instruction, const StepRegisters& registers) {
  const auto& bytes = instruction.bytes;
  base::Address sum = 0;
  for (char part : kAddressSums[static_cast<std::size_t>(instruction.entry().mode())]) {
    switch (part) {
      case 'x':
        sum += registers.hx;
        break;
      case 's':
        sum += registers.sp;
        break;
      case 'w': {
        const base::Bytes word = instruction.code().last(2);
        sum += base::Word(word[0], word[1]);
        break;
      }
      default:
        sum += bytes[static_cast<std::size_t>(part - '0')];
    }
  }
  return base::Low16(sum);
}

}  // namespace brevant::isa
