// SPDX-License-Identifier: MIT
// One window onto the stack of the stopped program: an entry a line, from the byte pushed last
// upwards to the next function or variable, or the end of RAM. Where the stack began is not known,
// so the last lines may no longer belong to it. Rests on the walk over the stack and the registers;
// the window only paints lines().
//
// What is kept of the stack and of the code costs nothing on the wire. Otherwise a line costs what
// its bytes do, and the code behind what may be return addresses at most kMostCode bytes at a time.
#pragma once

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "control/activity.h"
#include "control/register_frame.h"
#include "frames/stack_walk.h"
#include "memory/memory.h"
#include "symbols/debug_info.h"
#include "views/open_views.h"
#include "views/scroll_code.h"
#include "views/shown_bytes.h"

namespace brevant::views {

struct StackLine {
  std::string text;
  frames::StackEntry entry = {};
  std::vector<bool> changed = {};  // each byte, since the stop before
};
// Where byte n of a line is shown, in characters.
int StackByteColumn(int n);
int StackTextColumn();

struct StackViewState {
  int top = 0;        // entries above the first line
  int lineCount = 0;  // lines that fit in the window
  int cursorLine = 0;
};

// What a stack view shows; borrowed.
struct StackSources {
  memory::Memory& memory;
  const symbols::DebugInfo& debug_info;
  const control::RegisterFrame& frame;
  const control::Activity& activity;
};

class StackView final : public View {
 public:
  static constexpr long kMostCode = 128;

  StackView(OpenViews& open, const StackSources& sources) : View(open), sources_(sources) {}

  const StackViewState& state() const { return state_; }
  // As of the last Follow.
  const std::vector<StackLine>& lines() const { return lines_; }
  // Why there is no line; empty when there are some.
  const std::string& problem() const { return problem_; }
  // Of the scroll bar: no more entries than bytes.
  int last_position() const { return std::max(static_cast<int>(stack_.count) - 1, 0); }

  // As many lines as fit; a line that shows by half counts.
  void Resize(int client_height, int line_height);
  // position goes with ThumbTrack. Ignored during file I/O.
  void Scroll(ScrollCode code, int position = 0);
  void MoveCursor(int line);
  // Asks the target for everything that is shown, whatever is kept of it.
  void Refresh();
  // Where the entry under the cursor goes on; nothing for a single byte.
  std::optional<base::Address> CodeUnderCursor() const;
  // Of the line under the cursor, and what it took to show them all.
  std::string Explain() const;

 protected:
  bool ReadsTarget() const override { return !sources_.activity.FileIoActive(); }
  void Pull(const base::Generations& before, const base::Generations& now) override;

 private:
  // Why the stack is empty.
  std::string Problem() const;
  void ReadLines();
  StackLine MakeLine(const frames::StackEntry& entry);
  std::string Described(const frames::StackEntry& entry) const;

  StackSources sources_;
  StackViewState state_;
  std::vector<StackLine> lines_;
  std::string problem_;
  memory::Range stack_;
  ShownBytes shown_;
  base::Address sp_ = 0;             // of the lines
  long asked_ = 0, code_asked_ = 0;  // bytes, for the lines
};

}  // namespace brevant::views
