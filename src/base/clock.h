// SPDX-License-Identifier: MIT
// Time as the engine sees it. With the simulated target this is the target's own clock, so that
// waiting costs nothing at the instant pace.
#pragma once

#include <chrono>
#include <cstdint>

namespace brevant::base {

class Clock {
 public:
  virtual ~Clock() = default;

  // Milliseconds on a clock that never goes back; its zero means nothing.
  virtual std::int64_t NowMs() = 0;
  // Waits without yielding until NowMs() has reached the deadline: exact to a millisecond.
  virtual void SpinUntil(std::int64_t deadline_ms) = 0;
  // Gives the processor away for about this long.
  virtual void Sleep(std::chrono::milliseconds time) = 0;
};

}  // namespace brevant::base
