// SPDX-License-Identifier: MIT
// What tracing records, and its text. Never touches the target.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>

#include "base/address.h"
#include "base/function_ref.h"
#include "isa/instruction.h"
#include "isa/symbol_names.h"

namespace brevant::control {

// One step: its instruction, and the registers after it. SP is the frame base, as in RegisterFrame.
struct TraceRecord {
  isa::Instruction instruction;
  base::Address PC = 0, SP = 0;
  std::uint32_t HX = 0, A = 0, CCR = 0;
};

// The last 128 steps.
class TraceRing {
 public:
  static constexpr int kCapacity = 128;

  void Clear() { *this = TraceRing(); }
  void Add(const TraceRecord& record);
  int size() const { return wrapped_ ? kCapacity : next_; }
  // n counts from the oldest, 0 to size() - 1.
  const TraceRecord& At(int n) const;
  // The record made last; nullptr when there is none.
  const TraceRecord* Last() const { return size() == 0 ? nullptr : &At(size() - 1); }

 private:
  std::array<TraceRecord, kCapacity> records_{};
  int next_ = 0;
  bool wrapped_ = false;
};

inline constexpr int kTraceLinesPerRecord = 3;
inline constexpr int kMaxTraceSourceText = 198;  // characters

// The source text of the line that an address belongs to, without its line end; nothing when the
// address has no line or the source cannot be read.
using SourceTextAt = base::FunctionRef<std::optional<std::string>(base::Address)>;

// Three lines a record, oldest first: the instruction as source text or disassembly, the registers
// after it, and an empty line.
std::string FormatTraceLog(const TraceRing& ring, const isa::SymbolNames& symbols,
                           SourceTextAt source_text);

}  // namespace brevant::control
