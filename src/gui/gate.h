// SPDX-License-Identifier: MIT
// One thing at a time: commands, ticks and views that read the target all enter here. While one is
// inside, the event loop may run (progress, message boxes, prompts), and nothing else gets in.
#pragma once

#include <chrono>

#include "base/function_ref.h"

namespace brevant::gui {

class Gate {
 public:
  bool busy() const { return busy_; }
  // For how long the work inside has been under way.
  std::chrono::nanoseconds held() const { return Clock::now() - entered_; }
  // False, and work is not done, while something is under way.
  bool Run(base::FunctionRef<void()> work) {
    if (busy_) return false;
    busy_ = true;
    entered_ = Clock::now();
    work();
    busy_ = false;
    return true;
  }

  // For a command, while it only collects what it will act on: the tick goes on as if nothing were
  // under way. Modality keeps other commands out.
  void OpenDuring(base::FunctionRef<void()> dialog) {
    busy_ = false;
    dialog();
    busy_ = true;
    entered_ = Clock::now();
  }

 private:
  using Clock = std::chrono::steady_clock;
  bool busy_ = false;
  Clock::time_point entered_;
};

}  // namespace brevant::gui
