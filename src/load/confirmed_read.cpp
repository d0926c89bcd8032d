// SPDX-License-Identifier: MIT
#include "load/confirmed_read.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "base/crc16.h"

namespace brevant::load {
namespace {

using base::Address;
using devices::MemoryKind;

// 6 s at 9600 baud, to which the CRC adds 0.5 s.
constexpr std::size_t kPiece = 2048;
constexpr int kTries = 3;

bool ReadsTheSame(memory::Memory& memory, Address first, base::Bytes bytes) {
  std::vector<std::uint8_t> again(bytes.size());
  memory.AskBytes(again, first);
  return !memory.LinkError() && std::ranges::equal(bytes, again);
}

// Of bytes that are all of one kind, and all steady or none.
bool IsConfirmed(memory::Memory& memory, control::TargetCrc& crc, Address first,
                 base::Bytes bytes) {
  const MemoryKind kind = memory.KindOf(first);
  if (kind == MemoryKind::Nothing || !memory.IsSteady(first)) return true;
  if (kind == MemoryKind::Flash && bytes.size() >= control::TargetCrc::kWorthwhile) {
    if (const auto theirs = crc.Of(first, bytes.size())) return *theirs == base::Crc16(bytes);
  }
  return ReadsTheSame(memory, first, bytes);
}

bool AreConfirmed(memory::Memory& memory, control::TargetCrc& crc, Address first,
                  base::Bytes bytes) {
  const auto kind = [&](std::size_t i) {
    const Address at = first + static_cast<Address>(i);
    return std::pair(memory.KindOf(at), memory.IsSteady(at));
  };
  for (std::size_t start = 0, end = 0; start < bytes.size(); start = end) {
    while (end < bytes.size() && kind(end) == kind(start)) ++end;
    if (!IsConfirmed(memory, crc, first + static_cast<Address>(start),
                     bytes.subspan(start, end - start))) {
      return false;
    }
  }
  return true;
}

}  // namespace

ConfirmedRead ReadConfirmed(memory::Memory& memory, control::TargetCrc& crc, Address first,
                            std::span<std::uint8_t> bytes, Progress progress) {
  ConfirmedRead result;
  while (result.bytes < bytes.size()) {
    const Address at = first + static_cast<Address>(result.bytes);
    const auto piece = bytes.subspan(result.bytes, std::min(kPiece, bytes.size() - result.bytes));
    bool confirmed = false;
    for (int tries = 0; tries < kTries && !confirmed; ++tries) {
      std::size_t read = 0;
      const auto collect = [&](Address, base::Bytes portion) {
        std::ranges::copy(portion, piece.begin() + static_cast<std::ptrdiff_t>(read));
        read += portion.size();
        return progress(static_cast<long>(result.bytes + read), static_cast<long>(bytes.size()));
      };
      result.range = ReadRange(memory, at, piece.size(), collect);
      if (result.range != RangeResult::Complete) return result;
      confirmed = AreConfirmed(memory, crc, at, piece);
      if (memory.LinkError()) {
        result.range = RangeResult::LinkLost;
        return result;
      }
    }
    if (!confirmed) {
      result.range = RangeResult::Stopped;
      result.damaged = base::Low16(at);
      return result;
    }
    result.bytes += piece.size();
  }
  return result;
}

}  // namespace brevant::load
