// SPDX-License-Identifier: MIT
// N-step: single steps repeated by the timer until a number of steps, a breakpoint or a C statement
// is reached, or for ever. Rests on run control's step command.
#pragma once

#include <optional>

#include "control/activity.h"
#include "control/breakpoint_table.h"
#include "control/n_step_form.h"
#include "control/register_frame.h"
#include "control/run_control.h"
#include "symbols/debug_info.h"

namespace brevant::control {

class NStep final : public Operation {
 public:
  NStep(RunControl& run, Activity& activity, const RegisterFrame& frame,
        const BreakpointTable& breakpoints, const symbols::DebugInfo& debug_info);
  NStep(const NStep&) = delete;
  NStep& operator=(const NStep&) = delete;

  NStepSettings settings;

  // The menu item: stops when N-stepping, does nothing in another run mode. True when the setup
  // dialog is to be opened.
  bool MenuCommand();
  // The toolbar button: stops when N-stepping, does nothing in another run mode, else starts.
  void ToolbarCommand();
  void Start();
  // By the user.
  void Stop();
  // One tick.
  void Advance() override;

 private:
  void Step();
  // Nothing while the end has not been reached.
  std::optional<base::StopReason> EndReached() const;

  RunControl& run_;
  Activity& activity_;
  const RegisterFrame& frame_;
  const BreakpointTable& breakpoints_;
  const symbols::DebugInfo& debug_info_;
  int ticks_ = 0;       // since the last step
  int steps_done_ = 0;  // after the first one
};

}  // namespace brevant::control
