// SPDX-License-Identifier: MIT
// Where the next instruction will be: exactly, from registers and memory (hardware breakpoints), or
// as the second address that a branch may reach (software breakpoints). Pure functions.
#pragma once

#include <cstdint>

#include "base/address.h"
#include "base/function_ref.h"
#include "isa/instruction.h"
#include "isa/operand_address.h"

namespace brevant::isa {

// Whether a step goes into the subroutine that its instruction calls.
enum class Calls { Follow, StepOver };

using ReadMemory = base::FunctionRef<std::uint8_t(base::Address)>;
// A word costs one word access on the wire where two byte reads would cost more.
using ReadMemoryWord = base::FunctionRef<std::uint32_t(base::Address)>;

struct TargetMemory {
  ReadMemory byte;
  ReadMemoryWord word;
};

// The one address at which the step will end, 16 bits. A call that is stepped over ends behind
// itself. Reads only what the instruction itself reads (bit tests, counters, compares, return
// addresses).
base::Address PredictNextPC(const StepRegisters& registers, const Instruction& instruction,
                            Calls calls, const TargetMemory& memory);

enum class BranchKind { None = 0, Jump = 4, Call = 8, Return = 16, Conditional = 32 };

struct BranchAnalysis {
  BranchKind kind = BranchKind::None;
  base::Address target = 0;  // 16 bits; meaningful unless kind is None
};

// The second address that the instruction may reach besides its fall-through, without evaluating
// conditions. is_library_call answers for the target of an indexed JSR whether it is a library
// routine, which is then stepped over (kind None).
BranchAnalysis AnalyseBranch(const StepRegisters& registers, const Instruction& instruction,
                             Calls calls, const TargetMemory& memory,
                             base::FunctionRef<bool(base::Address)> is_library_call);

}  // namespace brevant::isa
