// SPDX-License-Identifier: MIT
// Commands of the File menu.
#include "base/files.h"
#include "gui/commands.h"
#include "gui/file_dialogs.h"
#include "gui/main_window.h"
#include "gui/session.h"

namespace brevant::gui {
namespace {

std::optional<std::string> Choose(const CommandContext& context, shell::Chooser chooser,
                                  const std::string& start) {
  return ChooseFile(
      &context.window,
      shell::PrepareChooser(chooser, start, context.session.debugger.debug_info.tool_chain,
                            base::WorkingDirectory()));
}

load::LoadOutcome Load(const CommandContext& context, const std::string& path) {
  Session& session = context.session;
  const load::LoadResult result = session.debugger.loader.LoadImage(path);
  // Also after a part of it: lines may show what was there before.
  session.program_views.RefreshProgramWindows();
  if (result.outcome == load::LoadOutcome::Loaded && session.debugger.debug_info.DebugInfoLoaded) {
    context.window.status().ShowNotice(result.debug_info_detail);
  }
  return result.outcome;
}

// Whether at least a part of the image came into the target, and its name into the title.
bool BecameCurrent(load::LoadOutcome outcome) {
  return outcome == load::LoadOutcome::Loaded || outcome == load::LoadOutcome::Cancelled ||
         outcome == load::LoadOutcome::LinkLost;
}

}  // namespace

void LoadChosenImage(const CommandContext& context) {
  const auto path = Choose(context, shell::Chooser::Image, context.session.recent_files.current());
  if (path) LoadImageFile(context, *path);
}

void LoadImageFile(const CommandContext& context, const std::string& path) {
  Session& session = context.session;
  if (!shell::FileChooser::Accepts(path)) {
    session.ui.ShowMessage(
        {"The path is longer than 99 characters:\n" + path, "Error Message", base::Icon::Warning});
    return;
  }
  // A file that cannot be loaded is not put among those that can.
  shell::RecentFiles files = session.recent_files;
  files.AddChosen(path);
  if (!BecameCurrent(Load(context, files.current()))) return;
  session.recent_files = files;
  session.recent_files.StoreAll(session.settings);
  context.window.menus().ShowRecentFiles(session.recent_files);
}

void LoadRecentFile(const CommandContext& context, int index) {
  Session& session = context.session;
  session.recent_files.MoveToFront(index);
  Load(context, session.recent_files.current());
  if (index == 0) return;
  session.recent_files.StoreUpTo(session.settings, index);
  context.window.menus().ShowRecentFiles(session.recent_files);
}

void RunChosenMacro(const CommandContext& context) {
  Session& session = context.session;
  const auto path =
      Choose(context, shell::Chooser::MacroFile, session.debugger.macros.LastMacroFile());
  if (!path) return;
  session.debugger.RunMacro(*path);
  session.program_views.RefreshProgramWindows();
}

void LoadChosenSymbols(const CommandContext& context) {
  Session& session = context.session;
  if (const auto path = Choose(context, shell::Chooser::SymbolFile, "")) {
    const std::string problem = session.debugger.LoadSymbols(*path);
    if (!problem.empty()) session.ui.ShowMessage({problem, "Error Message", base::Icon::Warning});
  }
  session.debugger.RefreshAfterStop();
  session.program_views.RefreshProgramWindows();
}

}  // namespace brevant::gui
