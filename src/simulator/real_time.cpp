// SPDX-License-Identifier: MIT
#include "simulator/real_time.h"

#include <thread>

namespace brevant::simulator {

namespace {

// The bus rate, 2.4576 MHz, is 192 cycles in 78125 ns.
constexpr std::int64_t kRatioCycles = 192;
constexpr std::int64_t kRatioNanoseconds = 78'125;

// A sleeping thread wakes up late by the scheduler's timer slack and its way back to a processor.
constexpr auto kWakeUp = std::chrono::microseconds(80);

}  // namespace

Nanoseconds ToTime(Cycles cycles) {
  return Nanoseconds(static_cast<std::int64_t>(cycles) * kRatioNanoseconds / kRatioCycles);
}

Cycles ToCycles(Nanoseconds time) {
  if (time.count() <= 0) return 0;
  // Whole seconds apart, so that the product does not overflow.
  const auto seconds = std::chrono::floor<std::chrono::seconds>(time);
  const std::int64_t rest = (time - seconds).count();
  return static_cast<Cycles>(seconds.count() * 2'457'600 +
                             (rest * kRatioCycles + kRatioNanoseconds - 1) / kRatioNanoseconds);
}

void RealTime::WaitUntil(Cycles cycle) const {
  const Clock::time_point when = start_ + ToTime(cycle);
  if (when - Clock::now() > kWakeUp) std::this_thread::sleep_until(when - kWakeUp);
  while (Clock::now() < when) {
  }
}

}  // namespace brevant::simulator
