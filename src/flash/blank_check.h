// SPDX-License-Identifier: MIT
// Whether flash is blank, by looking: a short routine in target RAM compares every byte with $FF,
// which takes a fifth of a second for all of it where reading takes a minute and a half. What the
// routine needs of the RAM and of the registers is put back.
#pragma once

#include <optional>
#include <span>
#include <vector>

#include "base/address.h"
#include "control/ram_routine.h"
#include "control/register_frame.h"
#include "devices/device.h"
#include "link/monitor_link.h"
#include "memory/memory.h"

namespace brevant::flash {

struct BlankReport {
  // The first byte in each page that is not blank; at most kMostNamed.
  std::vector<base::Address> used;
  // So many were found that the rest was not looked at.
  bool cut_short = false;
  bool blank() const { return used.empty(); }
};

class BlankCheck {
 public:
  static constexpr std::size_t kMostNamed = 8;

  BlankCheck(memory::Memory& memory, link::MonitorLink& link, control::RegisterFrame& frame)
      : memory_(memory), frame_(frame), routine_(memory, link, frame) {}

  // Of a stopped target that lets its flash be read, see SecurityKeeper::passed; where it does not,
  // the result means nothing. Nothing when the routine did not come back.
  std::optional<BlankReport> Look(std::span<const devices::MemoryRange> flash);
  // What of the ranges is used, in pieces of at most 2 KB that begin where the range does or at a
  // multiple of it.
  std::optional<std::vector<devices::MemoryRange>> UsedPieces(
      std::span<const devices::MemoryRange> flash);

 private:
  struct Found {
    bool ended = false;  // the routine came back
    std::optional<base::Address> used;
  };
  Found FirstUsed(base::Address first, base::Address last);

  memory::Memory& memory_;
  control::RegisterFrame& frame_;
  control::RamRoutine routine_;
};

}  // namespace brevant::flash
