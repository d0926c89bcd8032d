// SPDX-License-Identifier: MIT
#include "control/n_step.h"

namespace brevant::control {

namespace {

constexpr const char* kDetail = "end of N-step";

}  // namespace

NStep::NStep(RunControl& run, Activity& activity, const RegisterFrame& frame,
             const BreakpointTable& breakpoints, const symbols::DebugInfo& debug_info)
    : run_(run),
      activity_(activity),
      frame_(frame),
      breakpoints_(breakpoints),
      debug_info_(debug_info) {}

bool NStep::MenuCommand() {
  if (activity_.RunMode() == Mode::NStepping) {
    Stop();
    return false;
  }
  return activity_.RunMode() == Mode::Idle;
}

void NStep::ToolbarCommand() {
  if (activity_.RunMode() == Mode::NStepping) {
    Stop();
  } else if (activity_.RunMode() == Mode::Idle) {
    Start();
  }
}

void NStep::Start() {
  activity_.BeginOperation(Mode::NStepping, *this);
  ticks_ = 0;
  steps_done_ = 0;
  Step();
}

void NStep::Stop() {
  activity_.EndOperation();
  // A step that is still on its way is told when the timer completes it.
  if (!activity_.StepPending()) run_.Report({base::StopReason::UserBreak, frame_.PC, kDetail});
}

void NStep::Advance() {
  if (activity_.StepPending()) {
    run_.CompletePendingStep();
    ticks_ = 0;
    return;
  }
  if (const auto reason = EndReached()) {
    activity_.EndOperation();
    run_.Report({*reason, frame_.PC, kDetail});
    return;
  }
  if (++ticks_ < settings.update_rate) return;
  Step();
  ticks_ = 0;
  ++steps_done_;
}

void NStep::Step() {
  const bool started = run_.StepCommand(
      settings.into_subroutines ? Calls::Follow : Calls::StepOver,
      settings.condition == NStepCondition::AtStatement ? StepSource::Repeated : StepSource::User);
  if (!started) activity_.EndOperation();
}

std::optional<base::StopReason> NStep::EndReached() const {
  if (!frame_.StackIsRam()) return base::StopReason::BadStack;
  if (breakpoints_.Has(frame_.PC)) return base::StopReason::Breakpoint;
  switch (settings.condition) {
    case NStepCondition::AfterCount:
      if (steps_done_ > settings.count) return base::StopReason::StepDone;
      break;
    case NStepCondition::Forever:
      break;
    case NStepCondition::AtStatement:
      if (debug_info_.DebugInfoLoaded && debug_info_.LineTable.HasStatementAt(frame_.PC)) {
        return base::StopReason::PlaceReached;
      }
      break;
  }
  return std::nullopt;
}

}  // namespace brevant::control
