// SPDX-License-Identifier: MIT
// What the reset status register says.
#pragma once

#include <cstdint>
#include <string_view>

namespace brevant::devices {

// "COP time-out", "illegal opcode"; "unknown cause" when no bit is set.
std::string_view ResetCause(std::uint8_t status);

}  // namespace brevant::devices
