// SPDX-License-Identifier: MIT
// The window onto the list of watched variables: after each stop and each edit it reads them, and
// marks those whose values differ from the time before. Rests on the list, which goes on without
// it, and on the door to memory.
//
// A value that cannot be read is not shown as a number. Registers that change on being read are
// read only by Refresh.
#pragma once

#include <string>

#include "control/activity.h"
#include "memory/memory.h"
#include "views/open_views.h"
#include "views/watch_table.h"

namespace brevant::views {

class WatchView final : public View {
 public:
  // All is borrowed. The list starts anew.
  WatchView(OpenViews& open, WatchTable& table, memory::Memory& memory,
            const control::Activity& activity);

  const WatchTable& table() const { return table_; }
  // Whole lines alone count.
  void Resize(int client_height, int line_height);
  // Ignored during file I/O.
  void Scroll(ScrollCode code, int position = 0);
  void MoveCursor(int lines);
  void PlaceCursor(int row);
  // Asks the target for everything that is watched, whatever is kept of it.
  void Refresh();
  // Of the highlighted entry: where it lies, what it is taken for, and why it shows no value.
  std::string Explain() const;

 protected:
  // What does not read the target is shown at once; Pull asks whether it may.
  bool ReadsTarget() const override { return false; }
  void Pull(const base::Generations& before, const base::Generations& now) override;

 private:
  enum class Compare { WithTheTimeBefore, WithWhatIsShown };

  void Read(WatchItem& item, Compare compare) const;

  WatchTable& table_;
  memory::Memory& memory_;
  const control::Activity& activity_;
  bool on_request_ = false;
  bool missed_stop_ = false;  // a stop or an edit has not been followed yet
  long read_memory_ = -1;     // generations that were read
  long read_table_ = -1;
  long written_ = 0;
};

}  // namespace brevant::views
