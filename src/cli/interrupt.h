// SPDX-License-Identifier: MIT
// Ctrl-C: a wait ends, the target is stopped, and the console goes on or leaves in order.
#pragma once

namespace brevant::cli {

// From now on SIGINT is noted instead of ending the program; a second one while the first has not
// been looked at ends it.
void WatchForInterrupt();
// SIGINT has arrived since the last ClearInterrupt.
bool Interrupted();
void ClearInterrupt();

}  // namespace brevant::cli
