// SPDX-License-Identifier: MIT
#include "gui/command_dispatch.h"

#include <algorithm>
#include <array>

#include "gui/main_window.h"
#include "gui/session.h"

namespace brevant::gui {
namespace {

namespace commands = shell::commands;

enum class Target {
  Any,
  Stopped,  // the command transfers memory, which a running target does not answer
};

struct Row {
  int id;
  void (*action)(const CommandContext&);
  Target target = Target::Any;
};

template <int kIndex>
void LoadRecent(const CommandContext& context) {
  LoadRecentFile(context, kIndex);
}

constexpr std::array kRows{
    Row{commands::kLoadImage, LoadChosenImage, Target::Stopped},
    Row{commands::kLoadMacro, RunChosenMacro, Target::Stopped},
    Row{commands::kRunMacro, RunChosenMacro, Target::Stopped},
    Row{commands::kLoadSymbols, LoadChosenSymbols, Target::Stopped},
    Row{commands::kExit, Exit},
    Row{commands::kFirstRecentFile + 0, LoadRecent<0>, Target::Stopped},
    Row{commands::kFirstRecentFile + 1, LoadRecent<1>, Target::Stopped},
    Row{commands::kFirstRecentFile + 2, LoadRecent<2>, Target::Stopped},
    Row{commands::kFirstRecentFile + 3, LoadRecent<3>, Target::Stopped},
    Row{commands::kFirstRecentFile + 4, LoadRecent<4>, Target::Stopped},
    Row{commands::kRunToMain, ToggleRunToMain},
    Row{commands::kProgramRange, SetProgramRange},
    Row{commands::kSaveSettings, SaveSettings},
    Row{commands::kSaveOnExit, ToggleSaveOnExit},
    Row{commands::kStep, Step},
    Row{commands::kToolbarStep, Step},
    Row{commands::kStepOver, StepOver},
    Row{commands::kToolbarStepOver, StepOver},
    Row{commands::kGo, GoOrBreak},
    Row{commands::kToolbarGo, GoOrBreak},
    Row{commands::kRunToCursor, RunToCursor},
    Row{commands::kToolbarRunToCursor, RunToCursor},
    Row{commands::kReset, Reset},
    Row{commands::kReStart, ReStart},
    Row{commands::kOpenProgram, OpenProgram},
    Row{commands::kTile, Tile},
    Row{commands::kCascade, Cascade},
    Row{commands::kArrangeIcons, ArrangeIcons},
    Row{commands::kAbout, About},
    Row{commands::kPopupRunToCursor, PopupRunToCursor},
    Row{commands::kPopupRunToLabel, PopupRunToLabel},
    Row{commands::kPopupEdit, PopupEdit},
    Row{commands::kPopupGoToBreakpoint, PopupGoToBreakpoint},
    Row{commands::kPopupGoToAddress, PopupGoToAddress},
    Row{commands::kPopupGoToSymbol, PopupGoToSymbol},
    Row{commands::kPopupGoToPc, PopupGoToPc},
    Row{commands::kPopupSetPc, PopupSetPc},
    Row{commands::kPopupClearBreakpoints, PopupClearBreakpoints},
    Row{commands::kToggleBreakpoint, ToggleBreakpoint},
};

constexpr const char* kStopFirst = "The target is running: press Break (F7) first.";

bool RefusedWhileRunning(const CommandContext& context) {
  if (!context.session.debugger.Busy()) return false;
  context.session.ui.Beep();
  context.window.status().ShowNotice(kStopFirst);
  return true;
}

}  // namespace

template <typename Work>
void CommandDispatch::Enter(const Work& work) {
  const bool entered = context_.session.gate.Run([&] {
    context_.session.debugger.BeginCommand();
    work();
    context_.window.UpdateViews();
  });
  if (entered) context_.window.Refresh();
}

void CommandDispatch::Send(int id) {
  Enter([this, id] { Carry(id); });
}

void CommandDispatch::LoadFile(const std::string& path) {
  Enter([&] {
    if (!RefusedWhileRunning(context_)) LoadImageFile(context_, path);
  });
}

void CommandDispatch::Carry(int id) {
  const shell::CommandRow* const command = shell::FindCommand(id);
  const auto* const row =
      std::find_if(kRows.begin(), kRows.end(), [id](const Row& known) { return known.id == id; });
  if (command == nullptr || row == kRows.end()) return;
  const Session& session = context_.session;
  if (!shell::IsDispatched(*command, {session.debugger.run_state.RunningShown,
                                      session.program_views.fileIoActive()})) {
    return;
  }
  if (row->target == Target::Stopped && RefusedWhileRunning(context_)) return;
  row->action(context_);
}

}  // namespace brevant::gui
