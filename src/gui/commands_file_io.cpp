// SPDX-License-Identifier: MIT
// Commands of the File I/O menu.
#include "base/files.h"
#include "base/text_format.h"
#include "control/messages.h"
#include "gui/command_actions.h"
#include "gui/file_dialogs.h"
#include "gui/file_io_dialog.h"
#include "gui/main_window.h"
#include "gui/session.h"
#include "workspace/command_rows.h"
#include "workspace/file_choosers.h"

namespace brevant::gui {
namespace {

namespace commands = workspace::commands;
using control::FileSide;

constexpr const char* kNoCursorLine =
    "Open a program window and put its cursor on the instruction that is to be the slot.";
constexpr const char* kUnchecked =
    "The file is bound, but its box is not checked: it takes no part in file I/O.";
constexpr const char* kSuspended =
    "The breakpoint at %04x does not count during file I/O: there is one hardware breakpoint.";

std::optional<base::Address> CursorAddress(const CommandContext& context) {
  const views::ProgramView* const view = context.session.program_views.main();
  const auto line = view != nullptr ? view->CursorLine() : std::nullopt;
  return line ? std::optional(line->address) : std::nullopt;
}

std::optional<std::string> Browse(const CommandContext& context, FileSide side, QWidget* parent,
                                  const std::string& start) {
  const auto chooser =
      side == FileSide::Input ? workspace::Chooser::InputText : workspace::Chooser::OutputText;
  Session& session = context.session;
  return ChooseFile(
      parent, session.ui,
      workspace::PrepareChooser(chooser, start, session.debugger.debug_info.tool_chain,
                                base::WorkingDirectory()));
}

void AskForFile(const CommandContext& context, const control::FileIoForm& form) {
  Session& session = context.session;
  control::FileIo& file_io = session.debugger.file_io;
  bool accepted = false;
  session.gate.OpenDuring([&] {
    accepted = AskForFileIo(
        &context.window, form,
        [&](QWidget* parent, const std::string& start) {
          return Browse(context, form.side, parent, start);
        },
        [&](const control::FileIoForm& filled) { return file_io.Commit(filled); });
  });
  if (!accepted) {
    file_io.Disable(form.side);
  } else if (!file_io.binding(form.side).enabled) {
    context.window.status().ShowNotice(kUnchecked);
  }
}

void Bind(const CommandContext& context, FileSide side, int command) {
  const auto address = CursorAddress(context);
  if (!address) {
    context.session.ui.Beep();
    context.window.status().ShowNotice(kNoCursorLine);
    return;
  }
  const auto form = context.session.debugger.file_io.OpenForm(side, *address);
  if (!form) return;
  AskForFile(context, *form);
  context.window.menus().SetText(command, control::RowOf(side).menu_text);
}

void InFile(const CommandContext& context) {
  Bind(context, FileSide::Input, commands::kFileIoIn);
}

void OutFile(const CommandContext& context) {
  Bind(context, FileSide::Output, commands::kFileIoOut);
}

void Start(const CommandContext& context) {
  control::FileIo& file_io = context.session.debugger.file_io;
  if (!file_io.Start()) return;
  if (const auto suspended = file_io.suspended(); suspended && file_io.active()) {
    context.window.status().ShowNotice(base::Format(kSuspended, *suspended),
                                       NoticeEnds::WithTheState);
  }
}

void Stop(const CommandContext& context) {
  debugger::Debugger& debugger = context.session.debugger;
  if (!debugger.file_io.active()) return;
  const base::Stop stop = debugger.run_control.Stop();
  if (stop.reason != base::StopReason::Refused) return;
  // The program runs on, so that there is no stop which would be explained.
  if (const auto message = control::StopMessage(stop)) context.session.ui.ShowMessage(*message);
}

constexpr CommandAction kActions[] = {
    {commands::kFileIoStart, Start},
    {commands::kFileIoStop, Stop},
    {commands::kFileIoIn, InFile},
    {commands::kFileIoOut, OutFile},
};

}  // namespace

std::span<const CommandAction> FileIoActions() {
  return kActions;
}

}  // namespace brevant::gui
