// SPDX-License-Identifier: MIT
#include "views/view.h"

#include <utility>

namespace brevant::views {

void View::Follow(const Generations& now, bool monitor_listens) {
  if (!requested_ && now == drawn_from_) return;
  if (NeedsTarget() && !monitor_listens) return;
  requested_ = false;
  // Before the pull, which may itself change what is kept of the memory.
  const Generations before = std::exchange(drawn_from_, now);
  Pull(before, now);
  Repaint();
}

}  // namespace brevant::views
