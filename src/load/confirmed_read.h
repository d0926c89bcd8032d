// SPDX-License-Identifier: MIT
// Reads a stretch of target memory so that what is handed out is what stands there. A bit that the
// line turns on its way to the host shows in no echo; so flash is compared with the CRC that the
// target computes of it, and the rest is read twice. Registers and
// what lies below the stack pointer may read differently each time, and nothing stands behind
// unused addresses: these are read once.
#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "base/address.h"
#include "control/target_crc.h"
#include "load/progress.h"
#include "load/target_range.h"
#include "memory/memory.h"

namespace brevant::load {

struct ConfirmedRead {
  RangeResult range = RangeResult::Complete;
  std::size_t bytes = 0;  // confirmed, from the start
  // The start of a piece of which no two readings agreed; range is then Stopped.
  std::optional<base::Address> damaged = {};
};

// Fills bytes from first on. progress is asked after every portion that was read.
ConfirmedRead ReadConfirmed(memory::Memory& memory, control::TargetCrc& crc, base::Address first,
                            std::span<std::uint8_t> bytes, Progress progress);

}  // namespace brevant::load
