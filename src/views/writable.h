// SPDX-License-Identifier: MIT
// Whether addresses can be written, asked before the first byte is. Rests on the memory map and on
// where the monitor works.
#pragma once

#include <optional>
#include <string>

#include "base/address.h"
#include "control/register_frame.h"
#include "memory/memory.h"

namespace brevant::views {

struct WriteRefusal {
  base::Address address = 0;
  std::string why;  // "8000 is flash, ..."
};

// The first address that takes no write. Nothing when all do.
std::optional<WriteRefusal> WhyNotWritable(const memory::Memory& memory,
                                           const memory::Range& range);

struct WriteRoom {
  std::optional<WriteRefusal> refused = {};
  std::optional<base::Address> moved_sp = {};  // the program's stack pointer, if it had to move
};
// The same, and where the monitor keeps the registers and works in the range, which would cost the
// link, the stack is moved out of it; not to the bytes of keep either.
WriteRoom MakeRoomToWrite(const memory::Range& range, const memory::Range& keep,
                          const memory::Memory& memory, control::RegisterFrame& frame);

}  // namespace brevant::views
