// SPDX-License-Identifier: MIT
// What all views have in common: they follow the engine by comparing generations. Nothing calls
// back into a view; after a command or a stop whoever shows it asks each open view to look.
#pragma once

#include "views/generations.h"

namespace brevant::views {

class View {
 public:
  View() = default;
  View(const View&) = delete;
  View& operator=(const View&) = delete;
  virtual ~View() = default;

  // Compares what it was drawn from with what is now, and pulls what it needs, if anything: only
  // then the target may be read. Waits with it while there is no monitor to ask.
  void Follow(const Generations& now, bool monitor_listens);
  // Reads everything that is shown anew, whatever is kept of it.
  virtual void Refresh() = 0;
  // Moves whenever there is something else to paint.
  long version() const { return version_; }

 protected:
  // Something was asked of the view that the next Follow carries out.
  void Request() { requested_ = true; }
  // What is held is to be painted otherwise.
  void Repaint() { ++version_; }
  // Whether it can do without the target now.
  virtual bool NeedsTarget() const { return true; }
  virtual void Pull(const Generations& before, const Generations& now) = 0;

 private:
  Generations drawn_from_;
  bool requested_ = true;
  long version_ = 0;
};

}  // namespace brevant::views
