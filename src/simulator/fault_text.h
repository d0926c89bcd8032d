// SPDX-License-Identifier: MIT
// A fault as users name it: "flip-reply@120" strikes at the 120th byte that the host sends,
// "flip-reply@120:3" inverts bit 3 of it.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "simulator/fault_plan.h"

namespace brevant::simulator {

// Nothing when the text is no fault.
std::optional<Fault> ParseFault(std::string_view text);
// "lose, drop-echo, ..."
std::string FaultNames();

}  // namespace brevant::simulator
