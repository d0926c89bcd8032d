// SPDX-License-Identifier: MIT
// Which functions the stopped program is in: the one at PC, the one that has called it or that it
// has interrupted, and so on. Where the tool chain tells where a function begins, the code up to PC
// says how much it has on the stack, and its return address lies above that. Elsewhere the stack is
// searched for one (stack_walk.h).
//
// Rests on the door to memory and the debug information.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "base/address.h"
#include "memory/memory.h"
#include "symbols/debug_info.h"

namespace brevant::frames {

// How a frame was found.
enum class Found {
  Here,        // the program stands in it
  Followed,    // by the code of the one it has called: certain, unless that is wrong
  CallStands,  // what looks like a return address lies behind a call of that very function
  Perhaps,     // what looks like one lies behind some call
};

struct Frame {
  base::Address pc = 0;    // where it stands, or goes on
  base::Address sp = 0;    // the program's own, as it will be there; the last byte lies above it
  base::Address call = 0;  // the call that is under way in it; else pc
  bool interrupted = false;
  Found found = Found::Here;
  // Null where the tool chain tells of none there. Valid until the debug information changes.
  const symbols::Function* function = nullptr;
  // SP as it was at the function's first instruction; nothing where that is not known.
  std::optional<base::Address> entry_sp = {};
};

class Unwinder {
 public:
  Unwinder(memory::Memory& memory, const symbols::DebugInfo& info) : memory_(memory), info_(info) {}

  // Of a program that is stopped at pc with its own stack pointer at sp.
  Frame Innermost(base::Address pc, base::Address sp);
  // The one that has called the frame's function or was interrupted by it. Nothing where there is
  // none, or it is not known: see reason.
  std::optional<Frame> CallerOf(const Frame& frame);
  // Why the last caller was not found, for people: "no call stands before 8123".
  const std::string& reason() const { return reason_; }

 private:
  Frame FrameAt(base::Address pc, base::Address sp, Found found);
  std::optional<Frame> ByCode(const Frame& frame);
  std::optional<Frame> BySearch(const Frame& frame);
  bool InRam(base::Address first, base::Address count) const;

  memory::Memory& memory_;
  const symbols::DebugInfo& info_;
  std::string reason_;
};

struct CallStack {
  std::vector<Frame> frames;  // the innermost first, never empty
  // Why it ends there, for people; empty behind main.
  std::string end;
};

// As far as main or as many frames.
CallStack FindCallStack(memory::Memory& memory, const symbols::DebugInfo& info, base::Address pc,
                        base::Address sp, int most);

// All RAM above sp up to where something else is known to lie; may be empty.
memory::Range StackAbove(base::Address sp, const memory::Memory& memory,
                         const symbols::DebugInfo& info);

// "#1 main at main.c:20", with what is not certain of it.
std::string FrameText(std::size_t number, const Frame& frame, const symbols::DebugInfo& info);

// "main", as C spells it; the symbol in which the address lies where no function is known; else
// "?".
std::string FunctionName(const Frame& frame, const symbols::DebugInfo& info);

}  // namespace brevant::frames
