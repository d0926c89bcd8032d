// SPDX-License-Identifier: MIT
#include "control/n_step.h"

namespace brevant::control {

NStep::NStep(RunControl& run, RegisterFrame& frame, BreakpointTable& breakpoints,
             const symbols::DebugInfo& debug_info, RunIndication& indication)
    : run_(run),
      state_(run.state()),
      frame_(frame),
      breakpoints_(breakpoints),
      debug_info_(debug_info),
      indication_(indication) {
  run_.SetBackgroundOperation(Mode::NStepping, this);
}

NStep::~NStep() {
  run_.SetBackgroundOperation(Mode::NStepping, nullptr);
}

bool NStep::MenuCommand() {
  if (state_.RunMode == Mode::NStepping) {
    Stop();
    return false;
  }
  return state_.RunMode == Mode::Idle;
}

void NStep::ToolbarCommand() {
  if (state_.RunMode == Mode::NStepping) {
    Stop();
  } else if (state_.RunMode == Mode::Idle) {
    Start();
  }
}

void NStep::Start() {
  state_.RunMode = Mode::NStepping;
  ticks_ = 0;
  steps_done_ = 0;
  indication_.ShowNStepping(true);
  Step();
}

void NStep::Stop() {
  indication_.ShowNStepping(false);
  state_.RunMode = Mode::Idle;
}

void NStep::Advance() {
  if (state_.StepPending) {
    run_.CompletePendingStep();
    indication_.ShowNStepping(true);
    ticks_ = 0;
    return;
  }
  if (ReachedEnd()) {
    Stop();
    return;
  }
  if (++ticks_ < settings.update_rate) return;
  Step();
  ticks_ = 0;
  ++steps_done_;
}

void NStep::Abandon() {
  indication_.ShowNStepping(false);
}

void NStep::Step() {
  state_.StepOver = !settings.into_subroutines;
  run_.StepCommand(settings.condition != NStepCondition::AtStatement);
}

bool NStep::ReachedEnd() const {
  if (breakpoints_.Has(frame_.PC)) return true;
  switch (settings.condition) {
    case NStepCondition::AfterCount:
      return steps_done_ > settings.count;
    case NStepCondition::Forever:
      return false;
    case NStepCondition::AtStatement:
      return debug_info_.DebugInfoLoaded && debug_info_.LineTable.HasLineAt(frame_.PC);
  }
  return false;
}

}  // namespace brevant::control
