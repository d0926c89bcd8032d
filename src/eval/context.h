// SPDX-License-Identifier: MIT
// What expressions are evaluated in: the stopped target, its program, and one of the functions that
// the program is in, whose variables are meant first. A value for one stop.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "base/address.h"
#include "frames/call_stack.h"
#include "frames/stack_depth.h"
#include "memory/memory.h"
#include "symbols/debug_info.h"

namespace brevant::eval {

// Of the stopped program; SP is its own.
struct Registers {
  base::Address pc = 0, sp = 0;
  std::uint32_t hx = 0, a = 0, ccr = 0;
};

// Whether registers are read that change when they are read.
enum class Reading { Sparing, Everything };

class Context {
 public:
  // The function at PC.
  Context(memory::Memory& memory, const symbols::DebugInfo& info, const Registers& registers,
          Reading reading);
  // One of its callers.
  Context(memory::Memory& memory, const symbols::DebugInfo& info, const Registers& registers,
          Reading reading, const frames::Frame& frame);

  memory::Memory& memory() const { return memory_; }
  const symbols::DebugInfo& info() const { return info_; }
  const Registers& registers() const { return registers_; }
  // Null where PC is in no function that is known.
  const symbols::Function* function() const { return function_; }
  // That the function belongs to, as the tool chain spells it; empty where that is not known.
  std::string module() const;
  base::Address sp() const { return sp_; }
  // The function at PC itself, whose registers are known.
  bool innermost() const { return pc_ == registers_.pc && sp_ == registers_.sp; }
  // SP at the function's first instruction. Its code is read when this is asked for first.
  std::optional<base::Address> EntrySp() const;
  // What the function may have written to its part of the stack so far.
  const frames::StackWrites& Written() const;

  struct ReadResult {
    std::vector<std::uint8_t> bytes = {};
    // Why there are none, for people: the link is lost, the line has damaged them twice, a register
    // among them changes on being read and is spared.
    std::string problem = {};
    bool ok() const { return problem.empty(); }
  };
  ReadResult Read(base::Address address, int count) const;

 private:
  memory::Memory& memory_;
  const symbols::DebugInfo& info_;
  Registers registers_;
  Reading reading_;
  base::Address pc_, sp_;
  const symbols::Function* function_;
  mutable bool entry_known_ = false;
  mutable std::optional<base::Address> entry_sp_;
  mutable std::optional<frames::StackWrites> writes_;
};

}  // namespace brevant::eval
