// SPDX-License-Identifier: MIT
// Commands that erase and program flash. A job runs to its end within its command, so that nothing
// else reaches the target meanwhile; only its own Cancel is taken.
#include "base/files.h"
#include "flash/flash_commands.h"
#include "flash/flash_records.h"
#include "flash/verdicts.h"
#include "frontend/stop_wait.h"
#include "gui/command_actions.h"
#include "gui/file_dialogs.h"
#include "gui/flash_backup.h"
#include "gui/flash_dialogs.h"
#include "gui/main_window.h"
#include "gui/messages.h"
#include "gui/session.h"
#include "load/verify.h"
#include "workspace/command_rows.h"
#include "workspace/file_choosers.h"

namespace brevant::gui {
namespace {

namespace commands = workspace::commands;

// Of one block, or of an erase.
constexpr std::chrono::seconds kMostForAStep{10};

FlashDialogLinks LinksOf(const CommandContext& context) {
  Session& session = context.session;
  return {.parent = &context.window,
          .font = context.window.view_font(),
          .settings = session.settings,
          .ui = session.ui,
          .can_back_up = session.debugger.security.passed()};
}

// What the dialog collects, while the tick goes on.
template <typename Ask>
auto Collect(const CommandContext& context, const Ask& ask) {
  decltype(ask()) collected;
  context.session.gate.OpenDuring([&] { collected = ask(); });
  return collected;
}

void Note(const CommandContext& context, const std::string& text) {
  context.window.status().ShowNotice(text, NoticeEnds::WithTheNextCommand);
}

// The outcome of what was started. Whatever went wrong has been told.
flash::FlashOutcome AwaitFlash(const CommandContext& context, bool started) {
  debugger::Debugger& debugger = context.session.debugger;
  const flash::FlashStatus& status = debugger.flash.status();
  if (started) {
    frontend::WaitForFlash(debugger, {.time_out = kMostForAStep,
                                      .progress = [&status] { return status.bytes_programmed; },
                                      .interrupted = [] { return false; }});
  }
  return status.outcome;
}

void AwaitErase(const CommandContext& context, bool started) {
  if (AwaitFlash(context, started) != flash::FlashOutcome::Done) return;
  Note(context, flash::ErasedText(context.session.debugger.flash.status().to_erase));
}

void EraseFlash(const CommandContext& context) {
  const auto choice = Collect(context, [&] { return AskForEraseRange(LinksOf(context)); });
  if (!choice || (choice->back_up && !BackUpFlash(context, ""))) return;
  AwaitErase(context, flash::EraseFlashRange(context.session.debugger.flash, choice->range.start,
                                             choice->range.end));
}

void MassErase(const CommandContext& context) {
  const auto back_up = Collect(context, [&] { return AskForMassErase(LinksOf(context)); });
  if (!back_up || (*back_up && !BackUpFlash(context, ""))) return;
  AwaitErase(context, flash::MassEraseFlash(context.session.debugger.flash));
}

void AwaitProgramming(const CommandContext& context, bool started) {
  if (AwaitFlash(context, started) != flash::FlashOutcome::Done) return;
  Note(context, base::Format("programmed %ld bytes, each block read back by the target",
                             context.session.debugger.flash.status().bytes_programmed));
}

void ProgramIrqVector(const CommandContext& context) {
  AwaitProgramming(context, flash::ProgramIrqVector(context.session.debugger.flash));
}

void ProgramLocations(const CommandContext& context) {
  const auto data = Collect(context, [&] { return AskForLocations(LinksOf(context)); });
  if (!data) return;
  AwaitProgramming(context, flash::ProgramFlashLocations(context.session.debugger.flash,
                                                         data->address, data->bytes));
}

void ProgramFile(const CommandContext& context) {
  Session& session = context.session;
  const auto browse = [&](const std::string& start) {
    return ChooseFile(&context.window, session.ui,
                      workspace::PrepareChooser(workspace::Chooser::FlashFile, start,
                                                session.debugger.debug_info.tool_chain,
                                                base::WorkingDirectory()));
  };
  const auto choice = Collect(context, [&] { return AskForFlashFile(LinksOf(context), browse); });
  if (!choice || (choice->back_up && !BackUpFlash(context, choice->path))) return;
  AwaitProgramming(context, flash::ProgramFlashFile(session.debugger.flash, choice->path));
}

constexpr CommandAction kActions[] = {
    {commands::kProgramFlash, ProgramFile},
    {commands::kEraseFlash, EraseFlash},
    {commands::kMassErase, MassErase},
    {commands::kProgramIrqVector, ProgramIrqVector},
    {commands::kProgramLocations, ProgramLocations},
};

}  // namespace

std::span<const CommandAction> FlashActions() {
  return kActions;
}

}  // namespace brevant::gui
