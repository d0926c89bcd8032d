// SPDX-License-Identifier: MIT
// The wall clock counted in bus cycles, and waiting on it to within some microseconds.
#pragma once

#include <algorithm>
#include <chrono>

#include "simulator/wire.h"

namespace brevant::simulator {

using Nanoseconds = std::chrono::nanoseconds;

Nanoseconds ToTime(Cycles cycles);
// The first cycle at which that much time has passed.
Cycles ToCycles(Nanoseconds time);

class RealTime {
 public:
  using Clock = std::chrono::steady_clock;

  RealTime() : start_(Clock::now()) {}
  // Cycles since the start.
  Cycles Now() const { return static_cast<Cycles>(ToCycles(Clock::now() - start_)); }
  // Sleeps until shortly before the cycle, then spins.
  void WaitUntil(Cycles cycle) const;
  // Leaves this much time out of the count, as if it had not passed.
  void Skip(Cycles cycles) { start_ += ToTime(cycles); }
  // Counts as if the time until the cycle had passed, if it has not.
  void JumpTo(Cycles cycle) { start_ = std::min(start_, Clock::now() - ToTime(cycle)); }

 private:
  Clock::time_point start_;
};

}  // namespace brevant::simulator
