// SPDX-License-Identifier: MIT
// Commands that erase and program flash. A job runs to its end within its command, so that nothing
// else reaches the target meanwhile; only its own Cancel is taken.
#include "base/files.h"
#include "flash/flash_commands.h"
#include "flash/flash_image.h"
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
constexpr const char* kVerifying = "Verifying flash...";

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

// All that a file holds: what the target has said of each block is not taken for it.
void VerifyFile(const CommandContext& context, const images::Image& image) {
  Session& session = context.session;
  debugger::Debugger& debugger = session.debugger;
  const flash::FlashStatus programmed = debugger.flash.status();
  if (!debugger.security.passed()) {
    session.ui.ShowMessage(base::ToMessage(messages::kFlashNotVerified));
    return;
  }
  session.ui.BeginProgress(kVerifying, kVerifying, true);
  const load::VerifyResult verified = load::Verify(
      debugger.memory, image,
      [&](long done, long total) { return session.ui.UpdateProgress(kVerifying, done, total); },
      &debugger.crc);
  session.ui.EndProgress();
  switch (verified.outcome) {
    case load::VerifyOutcome::Equal:
      if (programmed.outcome != flash::FlashOutcome::Done) break;
      return Note(context, flash::ProgrammedText(programmed) + ", all verified");
    case load::VerifyOutcome::Different:
      session.ui.ShowMessage(base::ToMessage(
          messages::kFlashDiffers,
          flash::DifferenceText(debugger.memory,
                                {verified.different, verified.compared, *verified.first})));
      break;
    case load::VerifyOutcome::Cancelled:
    case load::VerifyOutcome::LinkLost:
      session.ui.ShowMessage(base::ToMessage(messages::kFlashNotVerified));
      break;
  }
}

void ProgramFile(const CommandContext& context, const FileChoice& choice) {
  debugger::Debugger& debugger = context.session.debugger;
  const images::ImageFile file = images::ReadImageFile(choice.path, flash::ParseFlashRecords);
  const auto outcome = AwaitFlash(
      context, flash::ProgramFlashFile(debugger.flash, choice.path, file, &debugger.crc));
  if (outcome == flash::FlashOutcome::Done || outcome == flash::FlashOutcome::VerifyFailed) {
    VerifyFile(context, file.ToImage());
  }
}

// Then loads it, which brings its names and lines and finds in flash what it compares.
void FlashImage(const CommandContext& context, const FileChoice& choice) {
  debugger::Debugger& debugger = context.session.debugger;
  const images::ImageFile file = images::ReadImageFile(choice.path);
  if (!flash::FitsFlash(debugger.flash, choice.path, file)) return;
  for (const base::Message& remark : file.report.Remarks(choice.path)) {
    context.session.ui.ShowMessage(remark);
  }
  flash::FlashImage flash(debugger.flash.surroundings(), debugger.crc);
  const flash::FlashImageResult flashed = flash.Run(file.ToImage());
  if (flashed.outcome != flash::FlashOutcome::Done) return;
  context.session.settings.Store(base::keys::kProgramFile, choice.path);
  LoadImageFile(context, choice.path);
  // What was done last first: the status bar may not have room for all.
  std::string text;
  for (const std::string& line : flash::FlashImageText(flashed)) {
    text = text.empty() ? line : base::Format("%s; %s", line, text);
  }
  Note(context, text);
}

template <FileChoice::What kWhat>
void AskAndProgram(const CommandContext& context) {
  Session& session = context.session;
  const auto browse = [&](const std::string& start) {
    return ChooseFile(&context.window, session.ui,
                      workspace::PrepareChooser(workspace::Chooser::FlashFile, start,
                                                session.debugger.debug_info.tool_chain,
                                                base::WorkingDirectory()));
  };
  // The one that is being worked on; the dialog itself knows the one programmed last.
  const bool take_loaded = kWhat == FileChoice::What::FlashImage;
  const std::string name = take_loaded ? session.recent_files.current() : "";
  const auto choice =
      Collect(context, [&] { return AskForFlashFile(LinksOf(context), kWhat, name, browse); });
  if (!choice || (choice->back_up && !BackUpFlash(context, choice->path))) return;
  if (choice->what == FileChoice::What::FlashImage) {
    FlashImage(context, *choice);
  } else {
    ProgramFile(context, *choice);
  }
}

constexpr CommandAction kActions[] = {
    {commands::kProgramFlash, AskAndProgram<FileChoice::What::Program>},
    {commands::kFlashImage, AskAndProgram<FileChoice::What::FlashImage>},
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
