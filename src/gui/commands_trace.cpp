// SPDX-License-Identifier: MIT
// Commands of the trace and profile windows and of their popup menus.
#include "base/files.h"
#include "base/text_format.h"
#include "control/trace_rows.h"
#include "gui/command_actions.h"
#include "gui/file_dialogs.h"
#include "gui/main_window.h"
#include "gui/messages.h"
#include "gui/profile_window.h"
#include "gui/session.h"
#include "gui/source_dialogs.h"
#include "gui/trace_window.h"
#include "views/source_view.h"
#include "workspace/command_rows.h"
#include "workspace/file_choosers.h"

namespace brevant::gui {
namespace {

namespace commands = workspace::commands;

constexpr const char* kNotFound = "\"%s\" does not stand in the trace.";
constexpr const char* kNotReadable = "%s cannot be read any more: trace again.";
constexpr const char* kFromTheTop = "The search went on from the top.";
constexpr const char* kNothingTraced = "Nothing has been traced: there is nothing to export.";
constexpr const char* kExported = "%d steps written to %s";

// nullptr when another window is active.
views::TraceView* ActiveTrace(const CommandContext& context) {
  auto* const window = dynamic_cast<TraceWindow*>(context.window.active_view());
  return window != nullptr ? &window->view() : nullptr;
}

// In the program window, and in the source window where that is open and has its line.
void Show(const CommandContext& context, base::Address address) {
  ShowCode(context, address);
  views::ProgramViews& programs = context.session.program_views;
  if (programs.main() != nullptr) programs.main()->GoToAddress(address);
}

void GoTo(const CommandContext& context) {
  const views::TraceView* const view = ActiveTrace(context);
  const control::TraceRecord* const record = view != nullptr ? view->UnderCursor() : nullptr;
  if (record != nullptr) Show(context, record->instruction.address);
}

void OpenProfile(const CommandContext& context) {
  context.window.Open(kProfileKind);
}

void ProfileGoTo(const CommandContext& context) {
  auto* const window = dynamic_cast<ProfileWindow*>(context.window.active_view());
  const views::ProfileLine* const line = window != nullptr ? window->view().UnderCursor() : nullptr;
  if (line != nullptr && line->address) Show(context, *line->address);
}

void Search(const CommandContext& context, views::TraceView& view) {
  switch (view.Search()) {
    case views::TraceView::Found::Behind:
      return;
    case views::TraceView::Found::FromTheTop:
      return context.window.status().ShowNotice(kFromTheTop);
    case views::TraceView::Found::NotReadable:
      context.session.ui.Beep();
      return context.window.status().ShowNotice(base::Format(kNotReadable, view.path()));
    case views::TraceView::Found::Nowhere:
      context.session.ui.Beep();
      return context.window.status().ShowNotice(base::Format(kNotFound, view.search_text()));
  }
}

void Find(const CommandContext& context) {
  views::TraceView* const view = ActiveTrace(context);
  if (view == nullptr || view->line_count() == 0) return;
  base::SettingsFile& settings = context.session.settings;
  const bool match_case = settings.Integer(base::keys::kMatchCase) != 0;
  const auto wanted = AskForFind(&context.window, {view->search_text(), match_case},
                                 views::SourceView::kMostSearchText);
  if (!wanted) return;
  settings.Store(base::keys::kMatchCase, long{wanted->match_case});
  view->SetSearch(wanted->text, wanted->match_case);
  Search(context, *view);
}

void Export(const CommandContext& context) {
  Session& session = context.session;
  const debugger::Debugger& debugger = session.debugger;
  const control::Trace& trace = debugger.trace;
  if (trace.ring().size() == 0) {
    session.ui.Beep();
    context.window.status().ShowNotice(kNothingTraced);
    return;
  }
  const auto path = ChooseFile(
      &context.window, session.ui,
      workspace::PrepareChooser(workspace::Chooser::TraceTable, "", debugger.debug_info.tool_chain,
                                base::WorkingDirectory()));
  if (!path) return;
  const std::string error = base::ReplaceFile(
      *path, control::FormatTraceCsv(trace.ring(), trace.steps(), debugger.debug_info,
                                     debugger.operand_names));
  if (error.empty()) {
    context.window.status().ShowNotice(base::Format(kExported, trace.ring().size(), *path));
  } else {
    session.ui.ShowMessage(base::ToMessage(messages::kFileNotWritten, *path, error));
  }
}

constexpr CommandAction kActions[] = {
    {commands::kTraceGoTo, GoTo},          {commands::kTraceFind, Find},
    {commands::kTraceExport, Export},      {commands::kTraceProfile, OpenProfile},
    {commands::kProfileGoTo, ProfileGoTo},
};

}  // namespace

bool FindNextInTrace(const CommandContext& context) {
  views::TraceView* const view = ActiveTrace(context);
  if (view == nullptr) return false;
  if (!view->search_text().empty()) Search(context, *view);
  return true;
}

std::span<const CommandAction> TraceActions() {
  return kActions;
}

}  // namespace brevant::gui
