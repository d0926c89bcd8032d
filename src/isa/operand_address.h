// SPDX-License-Identifier: MIT
// Where the operand of an instruction lies in memory. A pure function of the instruction and the
// registers that it meets.
#pragma once

#include <cstdint>

#include "base/address.h"
#include "isa/instruction.h"

namespace brevant::isa {

// The registers before a step; the program counter is the instruction's address. sp is the
// program's own stack pointer (the byte it would push to).
struct StepRegisters {
  base::Address sp = 0;
  std::uint32_t hx = 0;
  std::uint32_t a = 0;
  std::uint32_t ccr = 0;
};

// 16 bits; of an operand of two bytes the first. The operand of JMP and JSR is where they go, that
// of MOV what it writes. Meaningless for an instruction without an operand in memory.
base::Address OperandAddress(const Instruction& instruction, const StepRegisters& registers);

}  // namespace brevant::isa
