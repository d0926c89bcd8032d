// SPDX-License-Identifier: MIT
// Waiting until nothing is under way any more. Rests on the engine's tick.
#pragma once

#include <chrono>

#include "base/function_ref.h"
#include "debugger/debugger.h"

namespace brevant::frontend {

enum class WaitEnd { Stopped, TimedOut, LinkLost, Interrupted };

// What ends a wait early, asked every 10 ms.
struct WaitLimits {
  std::chrono::milliseconds time_out;
  // It starts anew whenever what progress returns changes.
  base::FunctionRef<long()> progress;
  base::FunctionRef<bool()> interrupted;
};
// Ticks meanwhile. The target is left as it is, running if it was not found stopped.
WaitEnd WaitForStop(debugger::Debugger& debugger, const WaitLimits& limits);
// The same for the end of the flash job alone: a run to main that follows its reset is not waited
// for. A job that does not get on, or that the user interrupts, is cancelled.
WaitEnd WaitForFlash(debugger::Debugger& debugger, const WaitLimits& limits);

}  // namespace brevant::frontend
