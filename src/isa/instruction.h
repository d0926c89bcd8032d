// SPDX-License-Identifier: MIT
// One instruction as it stands in memory: what stepping executes, the trace keeps, the assembler
// makes and the disassembler shows. A value; rests on the instruction table.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include "base/address.h"
#include "isa/instruction_table.h"

namespace brevant::isa {

// Its bytes alone say how long it is.
struct Instruction {
  base::Address address = 0;
  // Behind the instruction's own stand those that were read with it.
  std::array<std::uint8_t, 4> bytes{};

  constexpr Entry entry() const { return Decode(bytes[0], bytes[1]); }
  constexpr int length() const { return entry().length(); }
  constexpr int cycles() const { return InstructionCycles(bytes[0], bytes[1]); }
  constexpr base::Bytes code() const {
    return base::Bytes(bytes).first(static_cast<std::size_t>(length()));
  }
  // The address behind it. Not cut to 16 bits, as little as the target of a branch: past either end
  // of the address space it is no symbol's address.
  constexpr base::Address end() const { return address + static_cast<base::Address>(length()); }
  // For an instruction that branches: the offset is its last byte.
  constexpr base::Address BranchTarget() const { return end() + (code().back() ^ 0x80u) - 0x80u; }
};

// The instruction that these bytes begin with. Four are enough; missing ones count as 0.
constexpr Instruction InstructionAt(base::Address address, base::Bytes bytes) {
  Instruction instruction{address, {}};
  std::copy_n(bytes.begin(), std::min(bytes.size(), instruction.bytes.size()),
              instruction.bytes.begin());
  return instruction;
}

}  // namespace brevant::isa
