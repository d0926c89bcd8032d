// SPDX-License-Identifier: MIT
#include "flash/blank_check.h"

#include <algorithm>
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
constexpr int kMostCheckPolls = 20;
constexpr base::Address kPieceMask = 0x07FF;

}  // namespace

std::optional<BlankReport> BlankCheck::Look(std::span<const devices::MemoryRange> flash) {
  if (!routine_.Begin(kRoutine, kRoutineBytes.size())) return std::nullopt;
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
  if (!routine_.End()) return std::nullopt;
  return report;
}

std::optional<std::vector<devices::MemoryRange>> BlankCheck::UsedPieces(
    std::span<const devices::MemoryRange> flash) {
  if (!routine_.Begin(kRoutine, kRoutineBytes.size())) return std::nullopt;
  std::vector<devices::MemoryRange> pieces;
  for (const devices::MemoryRange& range : flash) {
    for (base::Address at = range.first; at <= range.last;) {
      const Found found = FirstUsed(at, range.last);
      if (!found.ended) return std::nullopt;
      if (!found.used) break;
      const base::Address first = std::max(range.first, *found.used & ~kPieceMask);
      const base::Address last = std::min(range.last, *found.used | kPieceMask);
      pieces.push_back({first, last, range.kind});
      at = last + 1;
    }
  }
  if (!routine_.End()) return std::nullopt;
  return pieces;
}

BlankCheck::Found BlankCheck::FirstUsed(base::Address first, base::Address last) {
  auto routine = kRoutineBytes;
  routine[kFirst] = base::HighByte(first);
  routine[kFirst + 1] = base::LowByte(first);
  routine[kEnd] = base::HighByte(last + 1);
  routine[kEnd + 1] = base::LowByte(last + 1);
  if (!routine_.Run(routine, kRoutineBytes.size() - 1, kMostCheckPolls)) return {};
  // A and H:X have to agree: no single byte that the line has altered makes used flash blank.
  const bool blank = frame_.A == 0;
  if (blank ? frame_.HX != base::Low16(last + 1) : frame_.HX < first || frame_.HX > last) return {};
  return {.ended = true, .used = blank ? std::nullopt : std::optional(frame_.HX)};
}

}  // namespace brevant::flash
