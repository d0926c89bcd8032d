// SPDX-License-Identifier: MIT
#include "views/program_menu.h"

namespace brevant::views {

void ProgramMenu::RunToLabel(base::Address address) {
  run_control_.RunToAddress(address);
}

void ProgramMenu::AfterEdit() {
  views_.RefreshProgramWindows();
}

bool ProgramMenu::AfterBreakpointList(ProgramView& view, BreakpointList::Result result,
                                      base::Address address) {
  switch (result) {
    case BreakpointList::Result::Nothing:
      return false;
    case BreakpointList::Result::Deleted:
      views_.RepaintProgramWindows();
      return true;
    case BreakpointList::Result::GoTo:
      // Others may have been deleted before.
      views_.RepaintProgramWindows();
      view.GoToAddress(address);
      return true;
  }
  return false;
}

void ProgramMenu::GoToPc(ProgramView& view) {
  view.GoToAddress(frame_.PC);
}

bool ProgramMenu::SetPcToCursor(const ProgramView& view) {
  const auto line = view.CursorLine();
  if (!line) return false;
  frame_.PC = base::Low16(line->address);
  frame_.WriteProgramCounter(frame_.PC);
  views_.RepaintProgramWindows();
  return true;
}

void ProgramMenu::ClearAllBreakpoints() {
  breakpoints_.Clear();
  views_.RepaintProgramWindows();
}

}  // namespace brevant::views
