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
    const Hold hold(*this, true);
    work();
    return true;
  }

  // For a command, while it only collects what it will act on: the tick goes on as if nothing were
  // under way. Modality keeps other commands out.
  void OpenDuring(base::FunctionRef<void()> dialog) {
    const Hold hold(*this, false);
    dialog();
  }

 private:
  using Clock = std::chrono::steady_clock;

  // However the work ends, the gate is as it was before.
  class Hold {
   public:
    Hold(Gate& gate, bool busy) : gate_(gate), before_(gate.busy_) { gate.Set(busy); }
    ~Hold() { gate_.Set(before_); }
    Hold(const Hold&) = delete;
    Hold& operator=(const Hold&) = delete;

   private:
    Gate& gate_;
    const bool before_;
  };
  void Set(bool busy) {
    busy_ = busy;
    if (busy) entered_ = Clock::now();
  }

  bool busy_ = false;
  Clock::time_point entered_;
};

}  // namespace brevant::gui
