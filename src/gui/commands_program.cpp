// SPDX-License-Identifier: MIT
// Commands of the program windows and of their popup menu. They act on the one that was active
// last.
#include "gui/address_prompts.h"
#include "gui/command_actions.h"
#include "gui/edit_dialogs.h"
#include "gui/main_window.h"
#include "gui/messages.h"
#include "gui/session.h"
#include "views/instruction_editor.h"
#include "workspace/command_rows.h"

namespace brevant::gui {
namespace {

namespace commands = workspace::commands;

constexpr long kChecked = 8;  // as the settings keep it

// The view to act on; nullptr when none is open or the popup commands are refused.
views::ProgramView* Allowed(const CommandContext& context) {
  views::ProgramView* const view = context.session.program_views.main();
  const bool allowed = !context.session.debugger.activity.FileIoActive();
  return view != nullptr && allowed && !view->Running() ? view : nullptr;
}

void RunToCursor(const CommandContext& context) {
  if (RunToSourceCursor(context)) return;
  const views::ProgramView* const view = context.session.program_views.main();
  if (view == nullptr) return;
  if (const auto line = view->CursorLine()) {
    context.session.debugger.run_control.RunToCursor(line->address);
  }
}

void PopupRunToCursor(const CommandContext& context) {
  if (Allowed(context) != nullptr) RunToCursor(context);
}

void PopupRunToLabel(const CommandContext& context) {
  if (Allowed(context) == nullptr) return;
  if (const auto address = AskForSymbol(context, views::prompt_titles::kRunTo)) {
    context.session.debugger.run_control.RunToAddress(*address);
  }
}

void PopupEdit(const CommandContext& context) {
  const views::ProgramView* const view = Allowed(context);
  const auto line = view != nullptr ? view->CursorLine() : std::nullopt;
  if (!line) return;
  Session& session = context.session;
  views::InstructionEditor editor(*line, session.debugger.memory, session.debugger.operand_names,
                                  session.ui);
  const EditRequest request{.title = editor.Title(),
                            .text = editor.initial_text(),
                            .max_length = views::InstructionEditor::kMaxLength};
  AskForText(&context.window, context.window.view_font(), request, [&](std::string_view text) {
    return editor.Accept(text) ? std::string() : editor.refusal();
  });
}

void PopupGoToBreakpoint(const CommandContext& context) {
  views::ProgramView* const view = Allowed(context);
  if (view == nullptr) return;
  if (const auto address = AskForBreakpoint(context)) view->GoToAddress(*address);
}

void PopupGoToAddress(const CommandContext& context) {
  views::ProgramView* const view = Allowed(context);
  if (view == nullptr) return;
  if (const auto address = AskForAddress(context, views::prompt_titles::kGoToAddress)) {
    view->GoToAddress(*address);
  }
}

void PopupGoToSymbol(const CommandContext& context) {
  views::ProgramView* const view = Allowed(context);
  if (view == nullptr) return;
  if (const auto address = AskForSymbol(context, views::prompt_titles::kGoToSymbol)) {
    view->GoToAddress(*address);
  }
}

void PopupGoToPc(const CommandContext& context) {
  if (views::ProgramView* const view = Allowed(context)) {
    view->GoToAddress(context.session.debugger.frame.PC);
  }
}

void PopupSetPc(const CommandContext& context) {
  if (const views::ProgramView* const view = Allowed(context)) {
    if (const auto line = view->CursorLine()) context.session.debugger.frame.SetPC(line->address);
  }
}

void PopupClearBreakpoints(const CommandContext& context) {
  if (Allowed(context) != nullptr) context.session.debugger.breakpoints.Clear();
}

void ToggleBreakpoint(const CommandContext& context) {
  views::ProgramView* const view = context.session.program_views.main();
  const auto line = view != nullptr ? view->CursorLine() : std::nullopt;
  if (!line || context.session.debugger.activity.FileIoActive()) return;
  view->ToggleBreakpoint(line->address);
}

void ToggleSource(const CommandContext& context) {
  Session& session = context.session;
  const bool shown = !session.program_views.shows_source();
  session.program_views.ShowSource(shown);
  if (!session.settings.Store(base::keys::kShowSource, shown ? kChecked : 0L)) {
    session.ui.ShowMessage(
        base::ToMessage(messages::kSettingsNotStored, session.settings.path().string()));
  }
}

constexpr CommandAction kActions[] = {
    {commands::kRunToCursor, RunToCursor},
    {commands::kPopupRunToCursor, PopupRunToCursor},
    {commands::kPopupRunToLabel, PopupRunToLabel},
    {commands::kPopupEdit, PopupEdit},
    {commands::kPopupGoToBreakpoint, PopupGoToBreakpoint},
    {commands::kPopupGoToAddress, PopupGoToAddress},
    {commands::kPopupGoToSymbol, PopupGoToSymbol},
    {commands::kPopupGoToPc, PopupGoToPc},
    {commands::kPopupSetPc, PopupSetPc},
    {commands::kPopupClearBreakpoints, PopupClearBreakpoints},
    {commands::kToggleBreakpoint, ToggleBreakpoint},
    {commands::kShowSource, ToggleSource},
};

}  // namespace

std::span<const CommandAction> ProgramActions() {
  return kActions;
}

}  // namespace brevant::gui
