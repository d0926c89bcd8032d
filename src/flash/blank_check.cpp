// SPDX-License-Identifier: MIT
#include "flash/blank_check.h"

#include <array>

#include "flash/flash_routines.h"

namespace brevant::flash {
namespace {

// LDHX #first; again: LDA ,X; COMA; BNE done; AIX #1; CPHX #end; BNE again; done: SWI.
// A is 0 at the end when all were blank, else H:X points at one that was not.
constexpr std::array<std::uint8_t, 15> kRoutineBytes{0x45, 0x00, 0x00, 0xF6, 0x43, 0x26, 0x07, 0xAF,
                                                     0x01, 0x65, 0x00, 0x00, 0x26, 0xF5, 0x83};
constexpr std::size_t kFirst = 1, kEnd = 10;
// 14 cycles a byte: 0.19 s for the largest flash at a bus of 2.4576 MHz. A poll waits 0.11 s.
constexpr int kMaxPolls = 20;

}  // namespace

std::optional<BlankReport> BlankCheck::Look(std::span<const devices::MemoryRange> flash) {
  if (!frame_.ReadRegisters()) return std::nullopt;
  const auto pc = frame_.PC;
  const auto hx = frame_.HX, a = frame_.A, ccr = frame_.CCR;
  std::array<std::uint8_t, kRoutineBytes.size()> borrowed{};
  memory_.AskChecked(borrowed, kRoutine);

  const base::Address page_mask = memory_.device().flash.page_mask();
  BlankReport report;
  for (const devices::MemoryRange& range : flash) {
    for (base::Address at = range.first; at <= range.last && !report.cut_short;) {
      const Found found = FirstUsed(at, range.last);
      if (!found.ended) return std::nullopt;
      if (!found.used) break;
      report.used.push_back(*found.used);
      report.cut_short = report.used.size() == kMostNamed;
      at = (*found.used | page_mask) + 1;
    }
  }

  memory_.WriteBytes(kRoutine, borrowed);
  frame_.SetPC(pc);
  frame_.WriteHX(hx);
  frame_.WriteA(a);
  frame_.WriteCCR(ccr);
  if (memory_.LinkError()) return std::nullopt;
  return report;
}

BlankCheck::Found BlankCheck::FirstUsed(base::Address first, base::Address last) {
  auto routine = kRoutineBytes;
  routine[kFirst] = base::HighByte(first);
  routine[kFirst + 1] = base::LowByte(first);
  routine[kEnd] = base::HighByte(last + 1);
  routine[kEnd + 1] = base::LowByte(last + 1);
  if (memory_.WriteAndLook(kRoutine, routine)) return {};
  frame_.WriteProgramCounter(kRoutine);
  if (memory_.LinkError()) return {};
  memory_.RunTarget();
  if (!AwaitEnd() || !frame_.ReadRegisters()) return {};
  // A routine that ended elsewhere has seen nothing.
  if (frame_.PC != kRoutine + kRoutineBytes.size()) return {};
  if (memory_.TakeDamage()) return {};
  // A and H:X have to agree: no single byte that the line has altered makes used flash blank.
  const bool blank = frame_.A == 0;
  if (blank ? frame_.HX != base::Low16(last + 1) : frame_.HX < first || frame_.HX > last) return {};
  return {.ended = true, .used = blank ? std::nullopt : std::optional(frame_.HX)};
}

bool BlankCheck::AwaitEnd() {
  for (int polls = 0; polls < kMaxPolls; ++polls) {
    if (link_.PollBreak() == 0) return true;
  }
  return false;
}

}  // namespace brevant::flash
