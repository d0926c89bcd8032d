// SPDX-License-Identifier: MIT
// The stack of the stopped program, entry by entry upwards: single bytes, and what looks like more.
// Two bytes look like a return address when a call stands before the address. Five look like the
// registers that an interrupt has stacked (CCR, A, X, PC) when they are possible ones, the PC is
// the start of an instruction, and the code that runs below belongs to the handler of a vector. A
// number can look so without being it; only a call of the very function that runs below is taken
// as certain.
//
// The HC08 stacks downwards, so entries that were pushed earlier come later. Rests on the door to
// memory and the debug information.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "base/address.h"
#include "isa/instruction.h"
#include "memory/code_bytes.h"
#include "memory/memory.h"
#include "symbols/debug_info.h"

namespace brevant::frames {

struct StackEntry {
  enum class Kind { Byte, ReturnAddress, Interrupt };
  Kind kind = Kind::Byte;
  base::Address address = 0;
  std::vector<std::uint8_t> bytes = {};
  base::Address code = 0;      // where it goes on
  bool certain = false;        // of a return address
  isa::Instruction call = {};  // before it
  std::string vectors = {};    // that lead to the handler which has interrupted it
  bool looked_at = true;       // false: no more code was to be read
};

class StackWalk {
 public:
  // From first to the end (one past the last byte), of a program stopped at pc. The target is asked
  // for no more than most_code bytes of code and vectors; entries that need more say so.
  StackWalk(memory::Memory& memory, const symbols::DebugInfo& debug_info, base::Address pc,
            memory::Range stack, long most_code);

  // The next one upwards; nothing at the end, and when the link is lost.
  std::optional<StackEntry> Next();
  // Bytes of code and vectors that the target was asked for.
  long code_asked() const { return code_asked_; }

 private:
  std::uint8_t ByteAt(base::Address address);
  base::Address WordAt(base::Address address);
  bool Has(base::Address address, base::Address count) const { return address + count <= end_; }
  std::vector<std::uint8_t> BytesAt(base::Address address, base::Address count);
  // Reads code unless the bound is reached. False: it is.
  bool ReadCode(std::span<std::uint8_t> bytes, base::Address address);
  bool MayHoldCode(base::Address address) const;
  // The code that runs below belongs to this function.
  bool RunsIn(base::Address function) const;
  // The same, or what runs below is not known and follows it closely.
  bool MayRunIn(base::Address handler) const;
  // An instruction begins there, as far as can be told.
  bool MayBegin(base::Address address);
  std::optional<isa::Instruction> CallBefore(base::Address address);
  // The names of the vectors whose handler runs below.
  std::string VectorsOfHandlerBelow();
  std::optional<StackEntry> ReturnAddressAt(base::Address address);
  std::optional<StackEntry> InterruptAt(base::Address address);
  StackEntry Take(StackEntry entry);

  memory::Memory& memory_;
  const symbols::DebugInfo& debug_info_;
  memory::CodeBytes stack_;
  base::Address next_, end_;
  long most_code_, code_asked_ = 0;
  bool refused_ = false;  // to read code for the entry at hand
  // Where the program is, or may be, below the next entry.
  std::vector<base::Address> below_;
};

}  // namespace brevant::frames
