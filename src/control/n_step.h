// SPDX-License-Identifier: MIT
// N-step: single steps repeated by the timer until a number of steps, a breakpoint or a C statement
// is reached, or for ever. Rests on run control's step command.
#pragma once

#include "control/breakpoint_table.h"
#include "control/n_step_form.h"
#include "control/register_frame.h"
#include "control/run_control.h"
#include "control/run_indication.h"
#include "symbols/debug_info.h"

namespace brevant::control {

class NStep final : public BackgroundOperation {
 public:
  // Registers itself with run control.
  NStep(RunControl& run, RegisterFrame& frame, BreakpointTable& breakpoints,
        const symbols::DebugInfo& debug_info, RunIndication& indication);
  ~NStep() override;
  NStep(const NStep&) = delete;
  NStep& operator=(const NStep&) = delete;

  NStepSettings settings;

  // The menu item: stops when N-stepping, does nothing in another run mode. True when the setup
  // dialog is to be opened.
  bool MenuCommand();
  // The toolbar button: stops when N-stepping, does nothing in another run mode, else starts.
  void ToolbarCommand();
  void Start();
  void Stop();
  // One tick.
  void Advance() override;
  void Abandon() override;

 private:
  void Step();
  bool ReachedEnd() const;

  RunControl& run_;
  RunState& state_;
  RegisterFrame& frame_;
  BreakpointTable& breakpoints_;
  const symbols::DebugInfo& debug_info_;
  RunIndication& indication_;
  int ticks_ = 0;       // since the last step
  int steps_done_ = 0;  // after the first one
};

}  // namespace brevant::control
