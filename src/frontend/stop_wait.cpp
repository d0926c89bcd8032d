// SPDX-License-Identifier: MIT
#include "frontend/stop_wait.h"

namespace brevant::frontend {
namespace {

constexpr std::chrono::milliseconds kTick{10};

WaitEnd WaitWhile(base::FunctionRef<bool()> under_way, debugger::Debugger& debugger,
                  const WaitLimits& limits) {
  const auto deadline_from_now = [&] {
    return debugger.clock.NowMs() + static_cast<std::int64_t>(limits.time_out.count());
  };
  std::int64_t deadline = deadline_from_now();
  long reached = limits.progress();
  while (under_way()) {
    if (debugger.memory.LinkError()) return WaitEnd::LinkLost;
    if (limits.interrupted()) return WaitEnd::Interrupted;
    if (const long now = limits.progress(); now != reached) {
      reached = now;
      deadline = deadline_from_now();
    }
    if (debugger.clock.NowMs() >= deadline) return WaitEnd::TimedOut;
    debugger.clock.Sleep(kTick);
    debugger.Tick();
  }
  return debugger.memory.LinkError() ? WaitEnd::LinkLost : WaitEnd::Stopped;
}

}  // namespace

WaitEnd WaitForStop(debugger::Debugger& debugger, const WaitLimits& limits) {
  return WaitWhile([&] { return debugger.Busy(); }, debugger, limits);
}

WaitEnd WaitForFlash(debugger::Debugger& debugger, const WaitLimits& limits) {
  const WaitEnd end = WaitWhile([&] { return debugger.flash.running(); }, debugger, limits);
  if (end == WaitEnd::Interrupted || end == WaitEnd::TimedOut) debugger.flash.Cancel();
  return end;
}

}  // namespace brevant::frontend
