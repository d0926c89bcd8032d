// SPDX-License-Identifier: MIT
// Stepping, running, stopping. The monitor itself offers only "run"; control comes back through SWI
// bytes or the break module, and the monitor then sends its break byte. What does not stop within a
// short wait is completed by CompleteOnTimer, which the front end calls every 10 ms.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>

#include "base/settings_file.h"
#include "base/user_interface.h"
#include "base/workspace.h"
#include "control/breakpoint_table.h"
#include "control/register_frame.h"
#include "control/run_state.h"
#include "link/monitor.h"
#include "symbols/debug_info.h"

namespace brevant::control {

// A background operation with a run mode of its own (N-step, trace, flash), advanced by the timer
// while no break byte is outstanding.
class BackgroundOperation {
 public:
  virtual ~BackgroundOperation() = default;
  virtual void Advance() = 0;
};

enum class StopResult {
  Stopped,
  NoAnswer,       // the break signal had no effect: the program does not answer its IRQ pin
  NotRecovered,   // the target stopped, but its stack pointer could not be restored
};

class RunControl {
 public:
  RunControl(link::Monitor& monitor, RegisterFrame& frame, BreakpointTable& breakpoints,
             RunState& state, const symbols::DebugInfo& debug_info,
             const base::SettingsFile& settings, base::Workspace& workspace);

  // True while the source window has the focus and shows the program; the front end says so.
  void SetSourceViewCurrent(bool current) { source_view_current_ = current; }
  // Who advances when the break byte arrives in this mode. The operation outlives run control.
  void SetBackgroundOperation(Mode mode, BackgroundOperation* operation);

  // "Step" and "StepOver" (which sets StepOver first).
  void StepCommand(bool from_user);
  // One instruction. True when the target stopped within the short wait.
  bool SingleStep();
  // Reads the registers of a target that has just stopped after a step and disarms what the step
  // had armed.
  void FinishStop();
  // "Go" when nothing runs, else stop.
  void GoCommand();
  void Go();
  StopResult Stop();
  // Runs to the address without inserting the user's breakpoints.
  void RunToAddress(base::Address address);
  // The same unless PC is already there.
  void RunToCursor(base::Address cursor);
  // To the symbol or address of "RunToMainSymbol". Nothing when it is not known.
  void RunToMain();
  // After start-up, reset and load: RunToMain when the settings ask for it.
  void RunToMainIfConfigured();
  // Every 10 ms.
  void CompleteOnTimer();
  // A reset has taken the target away from whatever ran: undo what was planted, before the frame is
  // read again.
  void AbandonRunForReset();

  RunState& state() { return state_; }

 private:
  link::Monitor& monitor_;
  RegisterFrame& frame_;
  BreakpointTable& breakpoints_;
  RunState& state_;
  const symbols::DebugInfo& debug_info_;
  const base::SettingsFile& settings_;
  base::Workspace& workspace_;
  bool source_view_current_ = false;
};

}  // namespace brevant::control
