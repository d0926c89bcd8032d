// SPDX-License-Identifier: MIT
// Commands of the File menu.
#include "base/files.h"
#include "gui/command_actions.h"
#include "gui/file_dialogs.h"
#include "gui/main_window.h"
#include "gui/messages.h"
#include "gui/session.h"
#include "workspace/command_rows.h"
#include "workspace/file_choosers.h"
#include "workspace/image_breakpoints.h"

namespace brevant::gui {
namespace {

namespace commands = workspace::commands;

std::optional<std::string> Choose(const CommandContext& context, workspace::Chooser chooser,
                                  const std::string& start) {
  return ChooseFile(
      &context.window, context.session.ui,
      workspace::PrepareChooser(chooser, start, context.session.debugger.debug_info.tool_chain,
                                base::WorkingDirectory()));
}

// Loading has cleared the breakpoints; those that the image had are offered, as many as can be.
void OfferBreakpoints(const CommandContext& context, const std::string& path) {
  Session& session = context.session;
  control::BreakpointTable& table = session.debugger.breakpoints;
  std::vector<base::Address> offered = workspace::RememberedBreakpoints(session.settings, path);
  if (table.HardwareBreakMode() && !offered.empty())
    offered.erase(offered.begin() + 1, offered.end());
  if (offered.empty()) return;
  std::string list;
  for (const base::Address address : offered) list += base::Format(" %04x", address);
  const base::Message question = base::ToMessage(messages::kOfferBreakpoints, list);
  if (session.ui.ShowMessage(question) != base::Answer::Yes) return;
  for (const base::Address address : offered) {
    if (table.HardwareBreakMode() || table.TakesSwi(address)) table.AddBreakpoint(address);
  }
}

// Whether the file came to be loaded, be it in part or empty: its name is in the title.
bool BecameCurrent(load::LoadOutcome outcome) {
  return outcome == load::LoadOutcome::Loaded || outcome == load::LoadOutcome::Cancelled ||
         outcome == load::LoadOutcome::Differs || outcome == load::LoadOutcome::LinkLost;
}

load::LoadOutcome Load(const CommandContext& context, const std::string& path) {
  Session& session = context.session;
  const load::LoadResult result = session.debugger.loader.LoadImage(path);
  const bool came =
      result.outcome == load::LoadOutcome::Loaded || result.outcome == load::LoadOutcome::Differs;
  context.window.status().ShowNotice(came ? result.debug_info_detail : "");
  if (BecameCurrent(result.outcome)) LoadWatchList(context, path);
  if (came) {
    session.SetLoadedImage(path);
    OfferBreakpoints(context, path);
  }
  // What was given up half-way has cleared the breakpoints; they stay remembered with their image.
  if (!came && BecameCurrent(result.outcome)) session.SetLoadedImage("");
  return result.outcome;
}

void LoadChosenImage(const CommandContext& context) {
  const auto path =
      Choose(context, workspace::Chooser::Image, context.session.recent_files.current());
  if (path) LoadImageFile(context, *path);
}

template <int kIndex>
void LoadRecentFile(const CommandContext& context) {
  Session& session = context.session;
  session.recent_files.MoveToFront(kIndex);
  Load(context, session.recent_files.current());
  if (kIndex == 0) return;
  session.recent_files.StoreUpTo(session.settings, kIndex);
  context.window.menus().ShowRecentFiles(session.recent_files);
}

void RunChosenMacro(const CommandContext& context) {
  Session& session = context.session;
  const auto path =
      Choose(context, workspace::Chooser::MacroFile, session.debugger.macros.LastMacroFile());
  if (!path) return;
  session.debugger.RunMacro(*path);
}

void LoadChosenSymbols(const CommandContext& context) {
  Session& session = context.session;
  if (const auto path = Choose(context, workspace::Chooser::SymbolFile, "")) {
    const std::string problem = session.debugger.LoadSymbols(*path);
    context.window.status().ShowNotice(problem);
  }
  session.debugger.RefreshAfterStop();
}

constexpr CommandAction kActions[] = {
    {commands::kLoadImage, LoadChosenImage},
    {commands::kLoadMacro, RunChosenMacro},
    {commands::kLoadSymbols, LoadChosenSymbols},
    {commands::kFirstRecentFile, LoadRecentFile<0>},
    {commands::kFirstRecentFile + 1, LoadRecentFile<1>},
    {commands::kFirstRecentFile + 2, LoadRecentFile<2>},
    {commands::kFirstRecentFile + 3, LoadRecentFile<3>},
    {commands::kFirstRecentFile + 4, LoadRecentFile<4>},
};

}  // namespace

void LoadImageFile(const CommandContext& context, const std::string& path) {
  Session& session = context.session;
  if (!workspace::FileChooser::Accepts(path)) {
    session.ui.ShowMessage(
        base::ToMessage(messages::kPathTooLong, workspace::FileChooser::kMaxPathLength, path));
    return;
  }
  // A file that cannot be loaded is not put among those that can.
  workspace::RecentFiles files = session.recent_files;
  files.AddChosen(path);
  if (!BecameCurrent(Load(context, files.current()))) return;
  session.recent_files = files;
  session.recent_files.StoreAll(session.settings);
  context.window.menus().ShowRecentFiles(session.recent_files);
}

std::span<const CommandAction> FileActions() {
  return kActions;
}

}  // namespace brevant::gui
