// SPDX-License-Identifier: MIT
// How many bytes a function has put on the stack when it comes to an instruction, told from its
// code: the pushes and pulls on a way from its first instruction. What is called is taken to clean
// up behind itself, and what was pushed for a call is pulled by who has pushed it, as compilers do.
// Rests on the door to memory.
#pragma once

#include <optional>
#include <set>

#include "base/address.h"
#include "memory/memory.h"
#include "symbols/function.h"

namespace brevant::frames {

// 0 at the first instruction, where SP still lies right below the return address. Nothing where no
// way leads there, where SP is set from a register on the way, where two ways do not agree, and
// when the link is lost. Reads the function's code as far as it needs it.
std::optional<int> StackDepth(memory::Memory& memory, const symbols::Function& function,
                              base::Address pc);

// What a function may have written to its part of the stack. Places are told by their distance from
// SP as it was at the function's first instruction: 0 is the first byte that it can push.
struct StackWrites {
  std::set<int> places;
  bool may_be_all = false;  // an address in the stack has been handed on, or nothing is known

  bool MayHold(int first, int count) const;
};

// By all instructions from which some way leads to pc, loops included. Reads the whole function.
StackWrites StackWritesBefore(memory::Memory& memory, const symbols::Function& function,
                              base::Address pc);

}  // namespace brevant::frames
