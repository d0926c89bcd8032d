// SPDX-License-Identifier: MIT
#include "views/open_views.h"

#include <utility>

namespace brevant::views {

void OpenViews::Follow(const base::Generations& now, bool monitor_listens) {
  last_ = now;
  for (View* const view : views_) view->Follow(now, monitor_listens);
}

View::View(OpenViews& open) : open_(open) {
  open_.views_.push_back(this);
  // A view that is opened now has nothing to do with the stop before it.
  drawn_from_.stops = open_.last_.stops;
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
