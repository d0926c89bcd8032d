// SPDX-License-Identifier: MIT
// The clock of the status bar.
#pragma once

#include <string>

namespace brevant::workspace {

// hour 0 to 23; "11:05:09 PM", " 9:05:00 AM".
std::string ClockText(int hour, int minute, int second);

}  // namespace brevant::workspace
