// SPDX-License-Identifier: MIT
// One thing at a time: commands, ticks and views that read the target all enter here. While one is
// inside, the event loop may run (progress, message boxes, prompts), and nothing else gets in.
#pragma once

#include "base/function_ref.h"

namespace brevant::gui {

class Gate {
 public:
  bool busy() const { return busy_; }
  // False, and work is not done, while something is under way.
  bool Run(base::FunctionRef<void()> work) {
    if (busy_) return false;
    busy_ = true;
    work();
    busy_ = false;
    return true;
  }

 private:
  bool busy_ = false;
};

}  // namespace brevant::gui
