// SPDX-License-Identifier: MIT
// What came of a flash command in words, for all who tell it.
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "devices/device.h"

namespace brevant::flash {

// Of pages that were found blank: "erased 8000 to fdff, all blank".
std::string ErasedText(std::span<const devices::MemoryRange> erased);

}  // namespace brevant::flash
