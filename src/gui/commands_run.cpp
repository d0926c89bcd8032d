// SPDX-License-Identifier: MIT
// Commands that run, stop and reset the target.
#include "control/messages.h"
#include "gui/commands.h"
#include "gui/connect_dialog.h"
#include "gui/main_window.h"
#include "gui/session.h"
#include "link/native/serial_devices.h"

namespace brevant::gui {

void Step(const CommandContext& context) {
  context.session.debugger.run_control.StepCommand(control::Calls::Follow);
}

void StepOver(const CommandContext& context) {
  context.session.debugger.run_control.StepCommand(control::Calls::StepOver);
}

void GoOrBreak(const CommandContext& context) {
  const auto stopped = context.session.debugger.run_control.GoCommand();
  if (!stopped) return;
  if (const auto message = control::StopMessage(stopped->reason)) {
    context.session.ui.ShowMessage(*message);
  }
}

void RunToCursor(const CommandContext& context) {
  const views::ProgramView* const view = context.session.program_views.main();
  if (view == nullptr) return;
  if (const auto line = view->CursorLine()) {
    context.session.debugger.run_control.RunToCursor(line->address);
  }
}

namespace {

void NoteLostImage(const CommandContext& context) {
  if (!context.session.debugger.image_gone) return;
  context.window.status().ShowNotice(debugger::Debugger::kImageGone);
}

}  // namespace

void Reset(const CommandContext& context) {
  Session& session = context.session;
  session.ui.SetBusyCursor(true);
  session.debugger.Reset();
  session.ui.SetBusyCursor(false);
  session.program_views.RefreshProgramWindows();
  NoteLostImage(context);
}

void ReStart(const CommandContext& context) {
  Session& session = context.session;
  bool accepted = false;
  session.gate.OpenDuring([&] {
    accepted = AskForConnection(&context.window, session.settings, session.debugger.security,
                                session.ui, link::FindSerialDevices(), session.options.version);
  });
  if (!accepted) return;
  session.Reconnect();
  NoteLostImage(context);
}

}  // namespace brevant::gui
