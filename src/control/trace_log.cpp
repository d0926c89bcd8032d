// SPDX-License-Identifier: MIT
#include "control/trace_log.h"

#include <algorithm>

#include "base/text_format.h"
#include "base/text_number.h"
#include "isa/disassembler.h"

namespace brevant::control {

namespace {

std::string InstructionLine(const TraceRecord& record, const isa::SymbolNames& symbols,
                            SourceTextAt source_text) {
  const base::Address address = record.instruction.address;
  if (const auto text = source_text(address)) {
    // A line end in the text would break the count of lines.
    const auto end = std::min<std::size_t>(text->find_first_of("\r\n"), kMaxTraceSourceText);
    return base::Format("%05x: %s", address, text->substr(0, end));
  }
  return isa::Disassemble(record.instruction, symbols);
}

std::string RegisterLine(const TraceRecord& record) {
  constexpr base::Address kProgramSP = 5;
  return base::Format("PC=%04x  SP=%04x  HX=%04x  A=%02x  V11H=%s  INZC=%s", record.PC,
                      base::Low16(record.SP + kProgramSP), record.HX, record.A,
                      base::FormatBinary(record.CCR >> 4, 4), base::FormatBinary(record.CCR, 4));
}

}  // namespace

void TraceRing::Add(const TraceRecord& record) {
  if (size() < capacity_) {
    records_.push_back(record);
    return;
  }
  records_[static_cast<std::size_t>(oldest_)] = record;
  oldest_ = (oldest_ + 1) % capacity_;
}

const TraceRecord& TraceRing::At(int n) const {
  return records_[static_cast<std::size_t>((oldest_ + n) % size())];
}

std::string FormatTraceLog(const TraceRing& ring, const isa::SymbolNames& symbols,
                           SourceTextAt source_text) {
  std::string log;
  for (int n = FirstLogRecord(ring); n < ring.size(); ++n) {
    const TraceRecord& record = ring.At(n);
    log += InstructionLine(record, symbols, source_text) + '\n';
    log += RegisterLine(record) + "\n\n";
  }
  return log;
}

}  // namespace brevant::control
