// SPDX-License-Identifier: MIT
// The functions that the stopped program is in, one a line, the innermost first: name, source line
// of the call under way, and how sure that is. Rests on the call stack; the window only paints
// lines().
#pragma once

#include <string>
#include <vector>

#include "control/activity.h"
#include "control/register_frame.h"
#include "frames/call_stack.h"
#include "memory/memory.h"
#include "symbols/debug_info.h"
#include "views/open_views.h"
#include "views/scroll_code.h"

namespace brevant::views {

struct CallStackViewState {
  int top = 0;
  int lineCount = 0;   // lines that fit in the window
  int cursorLine = 0;  // of the frames, from 0
};

// Borrowed.
struct CallStackSources {
  memory::Memory& memory;
  const symbols::DebugInfo& debug_info;
  const control::RegisterFrame& frame;
  const control::Activity& activity;
};

class CallStackView final : public View {
 public:
  CallStackView(OpenViews& open, const CallStackSources& sources) : View(open), sources_(sources) {}

  const CallStackViewState& state() const { return state_; }
  const std::vector<frames::Frame>& frames() const { return stack_.frames; }
  // A text for each frame, and behind them why the stack could not be followed further, if so.
  const std::vector<std::string>& lines() const { return lines_; }
  // Where the frame under the cursor is; null when there is none.
  const frames::Frame* UnderCursor() const;

  void Resize(int client_height, int line_height);
  void Scroll(ScrollCode code, int position = 0);
  void MoveCursor(int line);
  // Reads stack and code anew.
  void Refresh();

 protected:
  bool ReadsTarget() const override { return !sources_.activity.FileIoActive(); }
  void Pull(const base::Generations& before, const base::Generations& now) override;

 private:
  int last() const { return static_cast<int>(stack_.frames.size()) - 1; }
  void ToTop(int top);

  CallStackSources sources_;
  CallStackViewState state_;
  frames::CallStack stack_;
  std::vector<std::string> lines_;
};

}  // namespace brevant::views
