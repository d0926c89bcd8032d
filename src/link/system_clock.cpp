// SPDX-License-Identifier: MIT
#include "link/system_clock.h"

#include <thread>

namespace brevant::link {

std::int64_t SystemClock::NowMs() {
  const auto now = std::chrono::steady_clock::now().time_since_epoch();
  return std::chrono::duration_cast<std::chrono::milliseconds>(now).count();
}

void SystemClock::SpinUntil(std::int64_t deadline_ms) {
  while (NowMs() < deadline_ms) {
  }
}

void SystemClock::Sleep(std::chrono::milliseconds time) {
  std::this_thread::sleep_for(time);
}

}  // namespace brevant::link
