// SPDX-License-Identifier: MIT
// What a line's code can do from an instruction on, read from the code alone: where it leads when
// it is done with the line, and how far it goes without having to decide. A line with a loop that
// can be left in one way only needs one breakpoint there instead of a step for every turn.
// Rests on the instruction set.
#pragma once

#include <optional>

#include "base/address.h"
#include "base/function_ref.h"
#include "isa/instruction.h"
#include "memory/memory.h"

namespace brevant::control {

// Where a run may end, and by how many bytes the stack will have grown there.
struct RunEnd {
  base::Address address = 0;
  int growth = 0;
};

struct LineCode {
  // The one way out of the line. Nothing where there are several or none, where a function returns
  // or is to be entered, and where that is not known.
  std::optional<RunEnd> exit;
  // The first instruction that decides how it goes on: a branch, a return, a call that is to be
  // entered. pc itself where that is one; nothing behind code that runs in a circle.
  std::optional<RunEnd> decision;
  // No way leads out of the line, whatever is decided.
  bool endless = false;
};

using CodeAt = base::FunctionRef<isa::Instruction(base::Address)>;
// Whether the call is to be stopped at instead of being passed.
using Enters = base::FunctionRef<bool(const isa::Instruction& call)>;

LineCode LookAtLine(base::Address pc, const memory::Range& line, CodeAt code_at, Enters enters);

}  // namespace brevant::control
