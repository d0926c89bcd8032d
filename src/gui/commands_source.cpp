// SPDX-License-Identifier: MIT
// Commands of the source window and of its popup menu. There is one at most.
#include "base/files.h"
#include "base/text_number.h"
#include "frames/source_line.h"
#include "gui/address_prompts.h"
#include "gui/command_actions.h"
#include "gui/edit_dialogs.h"
#include "gui/file_dialogs.h"
#include "gui/main_window.h"
#include "gui/messages.h"
#include "gui/session.h"
#include "gui/source_dialogs.h"
#include "gui/source_window.h"
#include "symbols/places.h"
#include "views/messages.h"
#include "workspace/command_rows.h"
#include "workspace/file_choosers.h"

namespace brevant::gui {
namespace {

namespace commands = workspace::commands;

constexpr int kLineDigits = 7;

// nullptr when it is not open.
views::SourceView* OpenView(const CommandContext& context) {
  const auto windows = context.window.Children(kSourceKind);
  if (windows.empty()) return nullptr;
  return &static_cast<SourceWindow*>(windows.front()->widget())->view();
}

// Its line is known and made current.
bool ShowLineOf(const CommandContext& context, base::Address address) {
  views::SourceView* const view = OpenView(context);
  const auto line = frames::LineAt(address, context.session.debugger.debug_info);
  if (view == nullptr || !line) return false;
  if (view->state().currentFile != line->file) view->OpenFile(line->file);
  view->GoToLine(static_cast<int>(line->line));
  return true;
}

void Refuse(const CommandContext& context, const std::string& why) {
  context.session.ui.Beep();
  context.window.status().ShowNotice(why);
}

void RefuseLine(const CommandContext& context, const views::SourceView& view) {
  const auto number = static_cast<std::uint32_t>(view.state().top + view.state().cursor + 1);
  const std::string line = symbols::LineName({number, view.state().currentFile},
                                             context.session.debugger.debug_info.LineTable);
  Refuse(context, base::Format(views::messages::kNoCodeInLine, line));
}

void RunToCursor(const CommandContext& context) {
  const views::SourceView* const view = OpenView(context);
  if (view == nullptr) return;
  if (const auto address = view->CursorAddress()) {
    context.session.debugger.run_control.RunToCursor(*address);
  } else {
    RefuseLine(context, *view);
  }
}

void GoToPc(const CommandContext& context) {
  views::SourceView* const view = OpenView(context);
  if (view == nullptr || view->ShowPcLine()) return;
  Refuse(context, base::Format(views::messages::kNoLineAtPc, context.session.debugger.frame.PC));
}

void GoToBreakpoint(const CommandContext& context) {
  views::SourceView* const view = OpenView(context);
  if (view == nullptr) return;
  const auto address = AskForBreakpoint(context);
  if (!address || view->GoToCode(*address)) return;
  Refuse(context, base::Format(views::messages::kNoLineThere, *address));
}

void OpenFile(const CommandContext& context) {
  views::SourceView* const view = OpenView(context);
  if (view == nullptr) return;
  const symbols::DebugInfo& info = context.session.debugger.debug_info;
  const auto chosen =
      ChooseName(&context.window, context.window.view_font(), "Open source file",
                 info.DebugInfoLoaded ? info.LineTable.files() : std::vector<std::string>(),
                 static_cast<int>(view->state().currentFile));
  if (chosen) view->OpenFile(static_cast<std::uint32_t>(*chosen));
}

void Find(const CommandContext& context) {
  views::SourceView* const view = OpenView(context);
  if (view == nullptr || !view->state().loaded) return;
  const auto wanted =
      AskForFind(&context.window, {view->state().searchText, view->state().matchCase},
                 views::SourceView::kMostSearchText);
  if (!wanted) return;
  view->SetSearch(wanted->text, wanted->match_case);
  view->Search();
}

void FindNext(const CommandContext& context) {
  if (FindNextInTrace(context)) return;
  if (views::SourceView* const view = OpenView(context)) view->Search();
}

void SetTabSize(const CommandContext& context) {
  views::SourceView* const view = OpenView(context);
  if (view == nullptr) return;
  const EditRequest request{.title = "Tab size",
                            .name = "TabSizeDlg",
                            .text = std::to_string(view->state().tabSize),
                            .max_length = 1};
  AskForText(&context.window, context.window.view_font(), request, [&](std::string_view text) {
    return view->SetTabSize(text) ? std::string() : views::messages::kExpectTabSize;
  });
}

void GoToLine(const CommandContext& context) {
  views::SourceView* const view = OpenView(context);
  if (view == nullptr || !view->state().loaded) return;
  const EditRequest request{.title = "Go to line", .max_length = kLineDigits};
  AskForText(&context.window, context.window.view_font(), request, [&](std::string_view text) {
    const int number = base::ParseLeadingDecimal(text);
    if (number < 1 || number > view->state().lineCount) {
      return base::Format(views::messages::kExpectLine, view->state().lineCount);
    }
    view->GoToLine(number);
    return std::string();
  });
}

void ToggleBreakpoint(const CommandContext& context) {
  views::SourceView* const view = OpenView(context);
  if (view != nullptr && !view->ToggleBreakpoint()) RefuseLine(context, *view);
}

void TellWhatCameOf(views::FileUse use, const std::string& chosen, const views::SourceView& view,
                    const CommandContext& context) {
  Session& session = context.session;
  switch (use) {
    case views::FileUse::Used:
      return;
    case views::FileUse::OtherName:
      return Refuse(context, base::Format(views::messages::kOtherName, chosen, view.FileName()));
    case views::FileUse::OtherFound:
      return Refuse(context,
                    base::Format(views::messages::kOtherFound, view.state().path, view.FileName()));
    case views::FileUse::NotStored:
      session.ui.ShowMessage(
          base::ToMessage(messages::kSettingsNotStored, session.settings.path().string()));
      return;
  }
}

void FindFile(const CommandContext& context) {
  views::SourceView* const view = OpenView(context);
  if (view == nullptr || view->FileName().empty()) return;
  const Session& session = context.session;
  const auto chosen = ChooseFile(
      &context.window, context.session.ui,
      workspace::PrepareChooser(workspace::Chooser::SourceFile, session.recent_files.current(),
                                session.debugger.debug_info.tool_chain, base::WorkingDirectory()));
  if (chosen) TellWhatCameOf(view->UseFile(*chosen), *chosen, *view, context);
}

void Refresh(const CommandContext& context) {
  if (views::SourceView* const view = OpenView(context)) view->Refresh();
}

constexpr CommandAction kActions[] = {
    {commands::kSourceRunToCursor, RunToCursor},
    {commands::kSourceGoToPc, GoToPc},
    {commands::kSourceGoToBreakpoint, GoToBreakpoint},
    {commands::kSourceOpenFile, OpenFile},
    {commands::kSourceFind, Find},
    {commands::kFindNext, FindNext},
    {commands::kSourceTabSize, SetTabSize},
    {commands::kSourceGoToLine, GoToLine},
    {commands::kSourceToggleBreakpoint, ToggleBreakpoint},
    {commands::kSourceFindFile, FindFile},
    {commands::kSourceRefresh, Refresh},
};

}  // namespace

void ShowCode(const CommandContext& context, base::Address address) {
  if (ShowLineOf(context, address)) return;
  views::ProgramViews& programs = context.session.program_views;
  if (programs.main() == nullptr) context.window.Open(kProgramKind);
  programs.main()->GoToAddress(address);
}

bool RunToSourceCursor(const CommandContext& context) {
  const debugger::Debugger& debugger = context.session.debugger;
  if (!debugger.run_control.SourceViewCurrent() || !debugger.debug_info.DebugInfoLoaded) {
    return false;
  }
  RunToCursor(context);
  return true;
}

std::span<const CommandAction> SourceActions() {
  return kActions;
}

}  // namespace brevant::gui
