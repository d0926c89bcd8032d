// SPDX-License-Identifier: MIT
// Commands that run, stop and reset the target.
#include "base/text_format.h"
#include "control/messages.h"
#include "gui/command_actions.h"
#include "gui/connect_dialog.h"
#include "gui/main_window.h"
#include "gui/n_step_dialog.h"
#include "gui/session.h"
#include "link/native/serial_devices.h"
#include "workspace/command_rows.h"

namespace brevant::gui {
namespace {

namespace commands = workspace::commands;

constexpr const char* kNStepGoesOn = "N-stepping: NStepping in the toolbar, or N Step, ends it.";
constexpr const char* kTraceGoesOn = "Tracing: the Tracing button ends it and shows the log.";
constexpr const char* kNStepNotStored =
    "The settings could not be written: what was chosen holds for this run.";
constexpr const char* kSuspended =
    "The breakpoint at %04x does not count on the way: there is one hardware breakpoint.";
constexpr const char* kStepsByLines =
    "Nothing was run. Here steps go by lines: Step line (F11), Step over line (F10), Step out "
    "(Shift+F11).";

void StepLines(const CommandContext& context, control::LineStepKind kind) {
  Session& session = context.session;
  const std::string problem = session.debugger.line_step.Start(kind);
  if (!problem.empty()) {
    session.ui.Beep();
    context.window.status().ShowNotice(problem);
  } else if (const auto user = session.debugger.line_step.suspended()) {
    context.window.status().ShowNotice(base::Format(kSuspended, *user));
  }
}

void StepLine(const CommandContext& context) {
  StepLines(context, control::LineStepKind::Into);
}

void StepOverLine(const CommandContext& context) {
  StepLines(context, control::LineStepKind::Over);
}

void StepOut(const CommandContext& context) {
  StepLines(context, control::LineStepKind::Out);
}

// In the source window of a C program a step is one of lines, where the tool chain's are known well
// enough for that.
void StepAs(const CommandContext& context, control::Calls calls, control::LineStepKind lines) {
  debugger::Debugger& debugger = context.session.debugger;
  const bool in_source =
      debugger.debug_info.DebugInfoLoaded && debugger.run_control.SourceViewCurrent();
  if (in_source && debugger.debug_info.tool_chain == symbols::ToolChain::Sdcc) {
    return StepLines(context, lines);
  }
  debugger.run_control.StepCommand(calls);
  if (in_source && debugger.debug_info.tool_chain == symbols::ToolChain::Imagecraft) {
    context.window.status().ShowNotice(kStepsByLines);
  }
}

void Step(const CommandContext& context) {
  StepAs(context, control::Calls::Follow, control::LineStepKind::Into);
}

void StepOver(const CommandContext& context) {
  StepAs(context, control::Calls::StepOver, control::LineStepKind::Over);
}

// Of what repeats steps until somebody ends it.
void TellTheWayOut(const CommandContext& context) {
  const control::Mode mode = context.session.debugger.activity.RunMode();
  if (mode == control::Mode::NStepping) {
    context.window.status().ShowNotice(kNStepGoesOn, NoticeEnds::WithTheState);
  } else if (mode == control::Mode::Tracing) {
    context.window.status().ShowNotice(kTraceGoesOn, NoticeEnds::WithTheState);
  }
}

// What repeats steps is under way as a run is, and ends in the same way.
void GoOrBreak(const CommandContext& context) {
  debugger::Debugger& debugger = context.session.debugger;
  if (debugger.activity.RunMode() == control::Mode::NStepping) return debugger.n_step.Stop();
  if (debugger.activity.RunMode() == control::Mode::Tracing) return debugger.trace.Command();
  const auto stopped = debugger.run_control.GoCommand();
  if (!stopped || stopped->reason != base::StopReason::Refused) return;
  // The program runs on, so that there is no stop which would be explained.
  if (const auto message = control::StopMessage(*stopped)) {
    context.session.ui.ShowMessage(*message);
  }
}

void NStep(const CommandContext& context) {
  Session& session = context.session;
  control::NStep& n_step = session.debugger.n_step;
  if (!n_step.MenuCommand()) return;
  NStepEnd end = NStepEnd::Cancelled;
  session.gate.OpenDuring([&] {
    end =
        AskForNStep(&context.window, context.window.view_font(),
                    control::OpenNStepForm(session.settings), [&](const control::NStepForm& form) {
                      if (control::CommitNStepForm(form, session.settings, n_step.settings)) return;
                      context.window.status().ShowNotice(kNStepNotStored);
                    });
  });
  // What was under way meanwhile may have begun something else.
  if (end == NStepEnd::Start && session.debugger.activity.RunMode() == control::Mode::Idle)
    n_step.Start();
  TellTheWayOut(context);
}

void NStepByButton(const CommandContext& context) {
  context.session.debugger.n_step.ToolbarCommand();
  TellTheWayOut(context);
}

// The button ends whatever is under way.
void Trace(const CommandContext& context) {
  debugger::Debugger& debugger = context.session.debugger;
  switch (debugger.activity.RunMode()) {
    case control::Mode::Idle:
    case control::Mode::Tracing:
      debugger.trace.Command();
      break;
    case control::Mode::NStepping:
      debugger.n_step.Stop();
      break;
    case control::Mode::Running:
    case control::Mode::LineStepping:
    case control::Mode::FileIo:
      GoOrBreak(context);
      break;
    case control::Mode::Operation:
      break;
  }
  TellTheWayOut(context);
}

void NoteLostImage(const CommandContext& context) {
  if (!context.session.debugger.image_gone) return;
  context.window.status().ShowNotice(debugger::Debugger::kImageGone);
}

void Reset(const CommandContext& context) {
  Session& session = context.session;
  session.ui.SetBusyCursor(true);
  const bool reset = session.debugger.Reset();
  session.ui.SetBusyCursor(false);
  if (reset) NoteLostImage(context);
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
    {commands::kStep, Step},          {commands::kStepOver, StepOver},
    {commands::kStepLine, StepLine},  {commands::kStepOverLine, StepOverLine},
    {commands::kNStep, NStep},        {commands::kToolbarNStep, NStepByButton},
    {commands::kToolbarTrace, Trace}, {commands::kStepOut, StepOut},
    {commands::kGo, GoOrBreak},       {commands::kReset, Reset},
    {commands::kReStart, ReStart},
};

}  // namespace

std::span<const CommandAction> RunActions() {
  return kActions;
}

}  // namespace brevant::gui
