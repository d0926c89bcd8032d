// SPDX-License-Identifier: MIT
// Commands that run, stop and reset the target.
#include "control/messages.h"
#include "gui/command_actions.h"
#include "gui/connect_dialog.h"
#include "gui/main_window.h"
#include "gui/session.h"
#include "link/native/serial_devices.h"
#include "workspace/command_rows.h"

namespace brevant::gui {
namespace {

namespace commands = workspace::commands;

void Step(const CommandContext& context) {
  context.session.debugger.run_control.StepCommand(control::Calls::Follow);
}

void StepOver(const CommandContext& context) {
  context.session.debugger.run_control.StepCommand(control::Calls::StepOver);
}

void GoOrBreak(const CommandContext& context) {
  const auto stopped = context.session.debugger.run_control.GoCommand();
  if (!stopped || stopped->reason != base::StopReason::Refused) return;
  // The program runs on, so that there is no stop which would be explained.
  if (const auto message = control::StopMessage(*stopped)) {
    context.session.ui.ShowMessage(*message);
  }
}

void NoteLostImage(const CommandContext& context) {
  if (!context.session.debugger.image_gone) return;
  context.window.status().ShowNotice(debugger::Debugger::kImageGone);
}

void Reset(const CommandContext& context) {
  Session& session = context.session;
  session.ui.SetBusyCursor(true);
  session.debugger.Reset();
  session.ui.SetBusyCursor(false);
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

constexpr CommandAction kActions[] = {
    {commands::kStep, Step},   {commands::kStepOver, StepOver}, {commands::kGo, GoOrBreak},
    {commands::kReset, Reset}, {commands::kReStart, ReStart},
};

}  // namespace

std::span<const CommandAction> RunActions() {
  return kActions;
}

}  // namespace brevant::gui
