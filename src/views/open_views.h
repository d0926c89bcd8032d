// SPDX-License-Identifier: MIT
// The open views, of every kind, and what all of them have in common: they follow the engine by
// comparing generations. Nothing calls back into a view; after a command or a stop whoever shows
// them asks the registry to let each look.
#pragma once

#include <vector>

#include "base/generations.h"

namespace brevant::views {

class View;

// In the order in which they were opened. Borrows the views, which enter and leave by themselves.
class OpenViews {
 public:
  OpenViews() = default;
  OpenViews(const OpenViews&) = delete;
  OpenViews& operator=(const OpenViews&) = delete;

  const std::vector<View*>& views() const { return views_; }
  // Lets each view follow. While the monitor does not listen, those that would have to read the
  // target wait.
  void Follow(const base::Generations& now, bool monitor_listens);

 private:
  friend class View;
  std::vector<View*> views_;
  base::Generations last_;  // that were followed
};

class View {
 public:
  explicit View(OpenViews& open);
  View(const View&) = delete;
  View& operator=(const View&) = delete;
  virtual ~View();

  // Compares what it was drawn from with what is now, and pulls what it needs, if anything: only
  // then the target may be read.
  void Follow(const base::Generations& now, bool monitor_listens);
  // Moves whenever there is something else to paint.
  long version() const { return version_; }

 protected:
  // Something was asked of the view that the next Follow carries out.
  void Request() { requested_ = true; }
  // What is held is to be painted otherwise.
  void Repaint() { ++version_; }
  // Whether Pull may read the target.
  virtual bool ReadsTarget() const { return true; }
  virtual void Pull(const base::Generations& before, const base::Generations& now) = 0;

 private:
  OpenViews& open_;
  base::Generations drawn_from_;
  bool requested_ = true;
  long version_ = 0;
};

}  // namespace brevant::views
