// SPDX-License-Identifier: MIT
// What tracing records, and its text. Never touches the target.
#pragma once

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "base/address.h"
#include "base/function_ref.h"
#include "isa/instruction.h"
#include "isa/operand_address.h"
#include "isa/symbol_names.h"

namespace brevant::control {

// One step: its instruction, the registers before and those after it, whose SP is the frame base,
// as in RegisterFrame.
struct TraceRecord {
  isa::Instruction instruction;
  isa::StepRegisters before = {};
  base::Address PC = 0, SP = 0;
  std::uint32_t HX = 0, A = 0, CCR = 0;
};

// The last steps.
class TraceRing {
 public:
  static constexpr int kMostRecords = 1 << 16;

  explicit TraceRing(int capacity = kMostRecords) : capacity_(capacity) {}
  void Clear() { *this = TraceRing(capacity_); }
  void Add(const TraceRecord& record);
  int size() const { return static_cast<int>(records_.size()); }
  // n counts from the oldest, 0 to size() - 1.
  const TraceRecord& At(int n) const;
  // The record made last; nullptr when there is none.
  const TraceRecord* Last() const { return size() == 0 ? nullptr : &At(size() - 1); }

 private:
  int capacity_;
  std::vector<TraceRecord> records_;
  int oldest_ = 0;
};

// Of how many steps the log tells, the last ones.
inline constexpr int kMostLogRecords = 128;
// The first of them in the ring.
inline int FirstLogRecord(const TraceRing& ring) {
  return std::max(ring.size() - kMostLogRecords, 0);
}
inline constexpr int kTraceLinesPerRecord = 3;
inline constexpr int kMaxTraceSourceText = 198;  // characters

// The source text of the line that an address belongs to, without its line end; nothing when the
// address has no line or the source cannot be read.
using SourceTextAt = base::FunctionRef<std::optional<std::string>(base::Address)>;

// Three lines for each of the last 128 records, oldest first: the instruction as source text or
// disassembly, the registers after it, and an empty line.
std::string FormatTraceLog(const TraceRing& ring, const isa::SymbolNames& symbols,
                           SourceTextAt source_text);

}  // namespace brevant::control
