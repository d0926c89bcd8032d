// SPDX-License-Identifier: MIT
// What a new board's flash holds: the blink example for the MC68HC908GP32, built into the program.
#pragma once

#include <string_view>

namespace brevant::simulator {

// S-records.
std::string_view DemoFirmware();

}  // namespace brevant::simulator
