// SPDX-License-Identifier: MIT
// Which memory an instruction will write. A pure function; nothing is read for it.
#pragma once

#include <cstdint>
#include <optional>

#include "base/address.h"
#include "isa/instruction.h"
#include "isa/operand_address.h"

namespace brevant::isa {

// No instruction writes in two places: these are count addresses from first on, the address space
// taken as a ring.
struct StepEffects {
  base::Address first = 0;
  int count = 0;  // 0 to 5

  constexpr bool Writes(base::Address address) const {
    return base::Low16(address - first) < static_cast<base::Address>(count);
  }
};

// Exactly the addresses that the instruction writes, whether or not the memory there takes it and
// whether or not the byte changes. Not told is what does not come from the instruction itself: what
// a break or an interrupt stacks and its handler writes, registers of the MCU that change on their
// own or when they are touched, and the reset that an illegal opcode ends in.
StepEffects PredictEffects(const StepRegisters& registers, const Instruction& instruction);

// What it writes there, the first byte high. Nothing where that does not follow from the registers
// and the instruction alone.
std::optional<std::uint32_t> WrittenValue(const StepRegisters& registers,
                                          const Instruction& instruction);

}  // namespace brevant::isa
