// SPDX-License-Identifier: MIT
// What happens to the target, told as it happens. What is shown and what may be chosen follows from
// the engine's own state, which whoever is told looks up; nothing here has to be remembered.
#pragma once

#include "base/stop.h"

namespace brevant::base {

class Events {
 public:
  virtual ~Events() = default;

  // The target has been let go and has not come back at once, or an operation has taken it.
  virtual void Started() = 0;
  // It has come to rest; the register frame is read.
  virtual void Stopped(const Stop& stop) = 0;
  // What is under way, or how it is to be shown, is no longer what it was.
  virtual void ActivityChanged() = 0;
  // The link has been lost, or there is a connection again.
  virtual void LinkChanged() = 0;
};

}  // namespace brevant::base
