// SPDX-License-Identifier: MIT
// What the popup menu of a program view does. Prompts and editors are shown by the window, which
// hands their results in. Rests on the program views and run control.
//
// All of it is refused while a program runs and during file I/O: ask Allowed first.
#pragma once

#include "base/address.h"
#include "control/breakpoint_table.h"
#include "control/register_frame.h"
#include "control/run_control.h"
#include "views/breakpoint_list.h"
#include "views/program_views.h"

namespace brevant::views {

class ProgramMenu {
 public:
  ProgramMenu(ProgramViews& views, control::RegisterFrame& frame,
              control::BreakpointTable& breakpoints, control::RunControl& run_control)
      : views_(views), frame_(frame), breakpoints_(breakpoints), run_control_(run_control) {}

  static bool Allowed(const ProgramViews& views, const ProgramView& view) {
    return !views.fileIoActive() && !view.Running();
  }

  // To what the symbol prompt answered.
  void RunToLabel(base::Address address);
  // After the instruction editor, whatever its answer: every view reads anew where it is.
  void AfterEdit();
  // After the breakpoint list has closed; address is what its "Go to" answered. True when marks
  // have changed, which other windows show too.
  bool AfterBreakpointList(ProgramView& view, BreakpointList::Result result, base::Address address);
  void GoToPc(ProgramView& view);
  // PC becomes the cursor line's address; the registers window is the caller's to repaint. False
  // when no line is shown.
  bool SetPcToCursor(const ProgramView& view);
  // The target is not touched. Marks have changed everywhere.
  void ClearAllBreakpoints();

 private:
  ProgramViews& views_;
  control::RegisterFrame& frame_;
  control::BreakpointTable& breakpoints_;
  control::RunControl& run_control_;
};

}  // namespace brevant::views
