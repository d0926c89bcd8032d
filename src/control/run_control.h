// SPDX-License-Identifier: MIT
// Stepping, running, stopping. The monitor itself offers only "run"; control comes back through SWI
// bytes or the break module, and the monitor then sends its break byte. What does not stop within a
// short wait is completed by CompleteOnTimer, which the front end calls every 10 ms.
//
// The dispatcher of commands clears MonitorLink's BreakPollState before each command. While
// WaitingForBreak is set the monitor does not listen, so starting anything is refused. After a
// failed transfer (LinkError) whatever was under way stays as it is, for AbandonRunForReset to undo
// once there is a connection again.
#pragma once

#include <map>
#include <optional>

#include "base/settings_file.h"
#include "base/workspace.h"
#include "control/breakpoint_table.h"
#include "control/register_frame.h"
#include "control/run_state.h"
#include "isa/next_pc.h"
#include "link/monitor.h"
#include "symbols/debug_info.h"

namespace brevant::control {

// A background operation with a run mode of its own (N-step, trace, flash), advanced by the timer
// while no break byte is outstanding.
class BackgroundOperation {
 public:
  virtual ~BackgroundOperation() = default;
  virtual void Advance() = 0;
  // A stop or a reset has ended the operation's run mode from outside. Comes from within Advance
  // when that sends the reset command.
  virtual void Abandon() {}
};

// The instruction that a step executes, as it was read from the target.
struct FetchedInstruction {
  base::Address address = 0;
  isa::StepInstruction code;
};

class RunControl {
 public:
  RunControl(link::Monitor& monitor, RegisterFrame& frame, BreakpointTable& breakpoints,
             RunState& state, const symbols::DebugInfo& debug_info,
             const base::SettingsFile& settings, base::Workspace& workspace);

  // True while the source window has the focus and shows the program; the front end says so.
  void SetSourceViewCurrent(bool current) { source_view_current_ = current; }
  // Who advances when no break byte is outstanding in this mode. Borrowed; nullptr for nobody.
  void SetBackgroundOperation(Mode mode, BackgroundOperation* operation);

  // One step. Calls are followed unless the caller has set StepOver. Does nothing when the user
  // steps in the source view of an Imagecraft program, which has no step by source lines.
  void StepCommand(bool from_user);
  // One instruction. True when the target stopped within the short wait (2 ms and a poll), else the
  // caller leaves its completion to the timer.
  bool SingleStep();
  // Reads the registers of a target that has just stopped after a step and disarms what the step
  // had armed. False when the link failed before the registers were known; nothing is then
  // disarmed.
  bool FinishStop();
  // The step or the run to an address whose break byte came late: FinishStop, and show it.
  void CompletePendingStep();
  // "Go" when nothing runs, else stop, whose result it then returns.
  std::optional<StopResult> GoCommand();
  // Runs with the user's breakpoints, and with interrupts enabled.
  void Go();
  // Sends the break signal. NoAnswer leaves everything as it was.
  StopResult Stop();
  // Runs to the address without inserting the user's breakpoints.
  void RunToAddress(base::Address address);
  // The same unless PC is already there, or a step breakpoint is still planted.
  void RunToCursor(base::Address cursor);
  // To the symbol or address of "RunToMainSymbol". Nothing when it is not known.
  void RunToMain();
  // After start-up, reset and load: RunToMain when the settings ask for it and the tool chain is
  // one for C.
  void RunToMainIfConfigured();
  // Every 10 ms. Never waits for the target.
  void CompleteOnTimer();
  // A reset has taken the target away from whatever ran: undoes what was planted, ends a background
  // operation and shows the stopped state. To be called before the frame is read again; nothing is
  // left to clear afterwards, when a run to main may be under way already.
  void AbandonRunForReset();

  RunState& state() { return state_; }
  bool LinkLost() const { return monitor_.LinkError(); }
  // PC when the last step or run began; after a step's analysis the address behind its instruction.
  base::Address step_start() const { return step_start_; }
  // What the last step executed.
  const FetchedInstruction& last_instruction() const { return instruction_; }
  // Reads the instruction at PC: three bytes, and a fourth when it has one.
  const FetchedInstruction& FetchInstruction();

 private:
  bool HasStopped(link::PollWait wait);
  // While the program runs or the link is lost there is no monitor to ask.
  bool MayStart() const { return !state_.WaitingForBreak && !monitor_.LinkError(); }
  void ArmStep();
  void StartRunning();
  void CompleteRun();
  // What the timer does in the present mode when no break byte is outstanding.
  void CompleteMode();
  // Idle again; tells a background operation that it has ended.
  void LeaveMode();
  // The stop of a program that has stopped by itself: completed as the timer would have done.
  StopResult StopBesideTimer();
  void ClearStep();
  void MarkPending();
  void ShowStopped();
  BackgroundOperation* Operation(Mode mode) const;

  link::Monitor& monitor_;
  RegisterFrame& frame_;
  BreakpointTable& breakpoints_;
  RunState& state_;
  const symbols::DebugInfo& debug_info_;
  const base::SettingsFile& settings_;
  base::Workspace& workspace_;
  bool source_view_current_ = false;
  base::Address step_start_ = 0;
  FetchedInstruction instruction_;
  // Go from a breakpoint whose first step came back late: run on when it does.
  bool go_after_step_ = false;
  std::map<Mode, BackgroundOperation*> background_;
};

}  // namespace brevant::control
