// SPDX-License-Identifier: MIT
// Reading the bytes of a watched variable, in the order that costs the least on the wire. Rests on
// the door to memory.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "memory/memory.h"
#include "views/watch_table.h"

namespace brevant::views {

// Most significant first; nothing when they could not be read.
struct WatchReading {
  std::optional<std::vector<std::uint8_t>> bytes = {};
  std::string problem = {};  // why not
};

// By the way leaves alone what changes on being read, and gives what was read of it last.
enum class Reading { ByTheWay, OnRequest };
WatchReading ReadWatched(const WatchItem& item, memory::Memory& memory, Reading how);

}  // namespace brevant::views
