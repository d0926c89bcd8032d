// SPDX-License-Identifier: MIT
#include "gui/command_dispatch.h"

#include <algorithm>
#include <array>

#include "gui/main_window.h"
#include "gui/session.h"

namespace brevant::gui {
namespace {

namespace commands = workspace::commands;

struct Row {
  int id;
  void (*action)(const CommandContext&);
};

template <int kIndex>
void LoadRecent(const CommandContext& context) {
  LoadRecentFile(context, kIndex);
}

constexpr std::array kRows{
    Row{commands::kLoadImage, LoadChosenImage},
    Row{commands::kLoadMacro, RunChosenMacro},
    Row{commands::kRunMacro, RunChosenMacro},
    Row{commands::kLoadSymbols, LoadChosenSymbols},
    Row{commands::kExit, Exit},
    Row{commands::kFirstRecentFile + 0, LoadRecent<0>},
    Row{commands::kFirstRecentFile + 1, LoadRecent<1>},
    Row{commands::kFirstRecentFile + 2, LoadRecent<2>},
    Row{commands::kFirstRecentFile + 3, LoadRecent<3>},
    Row{commands::kFirstRecentFile + 4, LoadRecent<4>},
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

// Whether the command may be carried out now; the user has been told why not.
bool Allowed(const CommandContext& context, const workspace::CommandRow& command) {
  switch (workspace::Judge(command, context.window.Conditions())) {
    case workspace::Verdict::CarryOut:
      return true;
    case workspace::Verdict::Ignore:
      return false;
    case workspace::Verdict::StopFirst:
      context.session.ui.Beep();
      context.window.status().ShowNotice(kStopFirst);
      return false;
  }
  return false;
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
    if (Allowed(context_, *workspace::FindCommand(commands::kLoadImage)))
      LoadImageFile(context_, path);
  });
}

void CommandDispatch::Carry(int id) {
  const workspace::CommandRow* const command = workspace::FindCommand(id);
  if (command == nullptr || !command->Has(workspace::kBuilt) || !Allowed(context_, *command))
    return;
  if (const WindowKind* const kind = KindOpenedBy(id)) {
    context_.window.Open(*kind);
    return;
  }
  const auto* const row =
      std::find_if(kRows.begin(), kRows.end(), [id](const Row& known) { return known.id == id; });
  if (row != kRows.end()) row->action(context_);
}

}  // namespace brevant::gui
