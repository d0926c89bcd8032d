// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>

namespace brevant::link {

// Waits until the descriptor is ready for events (those of poll) or the deadline has passed; the
// result is that of poll. The kernel's wait is exact to some tens of microseconds, unlike poll's
// milliseconds.
int WaitReady(int descriptor, short events, std::chrono::steady_clock::time_point deadline);

}  // namespace brevant::link
