// SPDX-License-Identifier: MIT
// The computer's own clock: what rules while a real port is open, or none.
#pragma once

#include "base/clock.h"

namespace brevant::link {

class SystemClock final : public base::Clock {
 public:
  std::int64_t NowMs() override;
  void SpinUntil(std::int64_t deadline_ms) override;
  void Sleep(std::chrono::milliseconds time) override;
};

}  // namespace brevant::link
