// SPDX-License-Identifier: MIT
// Stepping, running, stopping. The monitor itself offers only "run"; control comes back through SWI
// bytes or the break module, and the monitor then sends its break byte. What does not stop within a
// short wait is completed by CompleteOnTimer, which the front end calls every 10 ms.
//
// While the break byte is outstanding the monitor does not listen, so starting anything is refused.
// After a failed transfer (LinkError) whatever was under way stays as it is, for AbandonRunForReset
// to undo once there is a connection again.
#pragma once

#include <optional>

#include "base/events.h"
#include "base/settings_file.h"
#include "control/activity.h"
#include "control/breakpoint_table.h"
#include "control/register_frame.h"
#include "isa/instruction.h"
#include "isa/step_effects.h"
#include "link/monitor_link.h"
#include "memory/memory.h"
#include "symbols/debug_info.h"

namespace brevant::control {

// Who asks for a step.
enum class StepSource {
  User,
  Repeated,  // a step on the way to a C statement
};

class RunControl {
 public:
  RunControl(link::MonitorLink& link, memory::Memory& memory, RegisterFrame& frame,
             BreakpointTable& breakpoints, Activity& activity, const symbols::DebugInfo& debug_info,
             const base::SettingsFile& settings, base::Events& events);

  // True while the source window has the focus and shows the program; the front end says so.
  void SetSourceViewCurrent(bool current) { source_view_current_ = current; }

  // One step. Does nothing when the user steps in the source view of an Imagecraft program, which
  // has no step by source lines.
  void StepCommand(Calls calls, StepSource source = StepSource::User);
  // The step or the run to an address whose break byte came late: registers read, disarmed, told.
  void CompletePendingStep();
  // "Go" when nothing runs, else stop, whose result it then returns.
  std::optional<base::Stop> GoCommand();
  // Runs with the user's breakpoints, and with interrupts enabled.
  void Go();
  // Sends the break signal. Refused leaves everything as it was.
  base::Stop Stop();
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
  // A reset has taken the target away from whatever ran: undoes what was planted and ends what was
  // under way. To be called before the frame is read again; nothing is left to clear afterwards,
  // when a run to main may be under way already.
  void AbandonRunForReset();

  // Remembers the stop and tells it. The register frame has been read.
  void Report(base::Stop stop);
  // Nothing before the first.
  const std::optional<base::Stop>& last_stop() const { return last_stop_; }
  // How many have been reported.
  long stops() const { return stops_; }

  bool LinkLost() const { return link_.LinkError; }
  // PC when the last step or run began; after a step's analysis the address behind its instruction.
  base::Address step_start() const { return step_start_; }
  // What the last step executed.
  const isa::Instruction& last_instruction() const { return instruction_; }
  // Reads the instruction at PC.
  const isa::Instruction& FetchInstruction();

 private:
  bool HasStopped(link::PollWait wait);
  // While the program runs or the link is lost there is no monitor to ask.
  // Nor can anything run where no stop could save the registers, which is told as a stop.
  bool MayStart();
  base::Stop BadStack() const;
  // One instruction. Nothing when the target has not stopped within the short wait (2 ms and a
  // poll): its completion is left to the timer.
  std::optional<base::Stop> SingleStep(Calls calls);
  // Reads the registers of a target that has just stopped after a step and disarms what the step
  // had armed. Nothing when the link failed before the registers were known; nothing is then
  // disarmed.
  std::optional<base::Stop> FinishStop();
  void ArmStep(Calls calls);
  // RUN, with no more of what is kept of the memory dropped than the step may change.
  void LetStepRun(Calls calls);
  isa::StepRegisters Registers() const;
  void ArmPlace(base::Address address);
  // Why a step or a run to an address has ended there.
  base::StopReason ReasonOfStep(base::Address pc) const;
  void StartRunning();
  void CompleteRun();
  // What the timer does once no break byte is outstanding.
  void Complete();
  // The stop of a program that has stopped by itself: completed as the timer would have done.
  base::Stop StopBesideTimer();
  // What is known when no stop can be told.
  base::Stop NoStop(base::StopReason reason) const { return {reason, frame_.PC, {}}; }

  link::MonitorLink& link_;
  memory::Memory& memory_;
  RegisterFrame& frame_;
  BreakpointTable& breakpoints_;
  Activity& activity_;
  const symbols::DebugInfo& debug_info_;
  const base::SettingsFile& settings_;
  base::Events& events_;
  bool source_view_current_ = false;
  base::Address step_start_ = 0;
  isa::Instruction instruction_;
  // The run to an address under way; nothing for a step.
  std::optional<base::Address> place_;
  std::optional<base::Stop> last_stop_;
  long stops_ = 0;
};

}  // namespace brevant::control
