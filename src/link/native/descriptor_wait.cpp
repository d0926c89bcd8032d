// SPDX-License-Identifier: MIT
#include "link/native/descriptor_wait.h"

#include <poll.h>

#include <algorithm>

namespace brevant::link {

int WaitReady(int descriptor, short events, std::chrono::steady_clock::time_point deadline) {
  using Clock = std::chrono::steady_clock;
  pollfd request{descriptor, events, 0};
  const auto left = std::max(Clock::duration::zero(), deadline - Clock::now());
  const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(left);
  const timespec time{seconds.count(), std::chrono::nanoseconds(left - seconds).count()};
  return ::ppoll(&request, 1, &time, nullptr);
}

}  // namespace brevant::link
