// SPDX-License-Identifier: MIT
// Where an instruction can lead and what it leaves on the stack, as far as its bytes alone tell.
// Pure functions; see next_pc.h for where it does lead.
#pragma once

#include <optional>

#include "base/address.h"
#include "isa/instruction.h"

namespace brevant::isa {

enum class FlowKind {
  Straight,  // to the next instruction; WAIT, STOP and SWI among them, which come back there
  Branch,    // to the next one or to the target
  Jump,      // to the target
  Call,      // to the target, and back behind itself
  Return,    // RTS, RTI
  Illegal,   // nowhere: the MCU resets itself
};

struct Flow {
  FlowKind kind = FlowKind::Straight;
  // 16 bits; nothing where it depends on registers, or there is none.
  std::optional<base::Address> target = {};
};

// BSR and JSR take one to three bytes, and stack the two of the address behind them.
inline constexpr base::Address kShortestCall = 1, kLongestCall = 3;
inline constexpr base::Address kReturnBytes = 2;

Flow FlowOf(const Instruction& instruction);

// By how many bytes the stack has grown behind the instruction; calls come back with what they
// found. Nothing where SP is set from a register or to a fixed value (TXS, RSP), and for returns.
std::optional<int> StackGrowth(const Instruction& instruction);

}  // namespace brevant::isa
