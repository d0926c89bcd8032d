// SPDX-License-Identifier: MIT
// The window onto the list of watched variables: after each stop and each edit it reads them, and
// marks those whose values differ from the time before. Rests on the list, which goes on without
// it, and on the door to memory.
//
// A value that cannot be read is not shown as a number. Registers that change on being read are
// read only by Refresh.
#pragma once

#include <string>
#include <string_view>

#include "control/activity.h"
#include "control/register_frame.h"
#include "eval/evaluate.h"
#include "memory/memory.h"
#include "symbols/debug_info.h"
#include "views/open_views.h"
#include "views/watch_table.h"

namespace brevant::views {

// What is watched; borrowed.
struct WatchSources {
  memory::Memory& memory;
  const symbols::DebugInfo& debug_info;
  const control::RegisterFrame& frame;
  const control::Activity& activity;
};

class WatchView final : public View {
 public:
  // All is borrowed. The list starts anew.
  WatchView(OpenViews& open, WatchTable& table, const WatchSources& sources, bool as_c = false);

  const WatchTable& table() const { return table_; }
  // Whole lines alone count.
  void Resize(int client_height, int line_height);
  // Ignored during file I/O.
  void Scroll(ScrollCode code, int position = 0);
  void MoveCursor(int lines);
  void PlaceCursor(int row);
  // Values whose names C knows are shown as C writes them.
  bool as_c() const { return as_c_; }
  void ShowAsC(bool wanted);
  // The highlighted value's parts appear below it, or go.
  void Unfold(bool unfolded);
  // The same of the row in sight at the column, where its mark stands; false elsewhere.
  bool ToggleAt(int row, int column);
  // The highlighted part of a value, where it can be changed; nullptr else.
  const ValueRow* EditablePart() const;
  // Changes it to what the text comes to. Empty, or why not.
  std::string AssignPart(std::string_view text) const;
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

  void ReadEntry(int entry, Compare compare, const eval::Context& context);
  // Where an expression lies now, or its number, or why there is neither.
  static void Locate(WatchItem& item, const eval::Result& meant, const eval::Context& context);
  void ReadBytes(WatchItem& item) const;
  void UnfoldAt(int line, bool unfolded);
  const ValueRow* RowAt(const WatchTable::Place& place) const;

  WatchTable& table_;
  WatchSources sources_;
  bool as_c_;
  bool on_request_ = false;
  bool missed_stop_ = false;  // a stop or an edit has not been followed yet
  long read_memory_ = -1;     // generations that were read
  long read_table_ = -1;
  long read_symbols_ = -1;
  long written_ = 0;
};

}  // namespace brevant::views
