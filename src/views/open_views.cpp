// SPDX-License-Identifier: MIT
#include "views/open_views.h"

#include <utility>

namespace brevant::views {

void OpenViews::Follow(const base::Generations& now, bool monitor_listens) {
  for (View* const view : views_) view->Follow(now, monitor_listens);
}

View::View(OpenViews& open) : open_(open) {
  open_.views_.push_back(this);
}

View::~View() {
  std::erase(open_.views_, this);
}

void View::Follow(const base::Generations& now, bool monitor_listens) {
  if (!requested_ && now == drawn_from_) return;
  if (ReadsTarget() && !monitor_listens) return;
  requested_ = false;
  Pull(drawn_from_, now);
  drawn_from_ = now;
  Repaint();
}

}  // namespace brevant::views
