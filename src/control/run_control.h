// SPDX-License-Identifier: MIT
// Stepping, running, stopping. The monitor itself offers only "run"; control comes back through SWI
// bytes or the break module, and the monitor then sends its break byte. What does not stop within a
// short wait is completed by CompleteOnTimer, which the front end calls every 10 ms.
//
// While the break byte is outstanding the monitor does not listen, so starting anything is refused.
// A failed transfer (LinkError) ends whatever was under way, which is told as a stop; what was
// planted is taken back by AbandonRunForReset once there is a connection again.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "base/events.h"
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

// An MCU that has reset itself waits in its monitor for the security code: enters it anew, without
// taking its power away, and puts PC where a reset leaves it. Returns what the MCU gives as the
// cause; nothing when it does not wait for the code, and LinkError then tells whether it answers.
using EnterAgain = std::function<std::optional<std::string>()>;

// Where file I/O catches the program: by the break module, and by an SWI that it has put there.
struct Slots {
  base::Address by_module = 0;
  std::optional<base::Address> by_swi;
  bool Has(base::Address address) const { return address == by_module || by_swi == address; }
};

class RunControl {
 public:
  RunControl(link::MonitorLink& link, memory::Memory& memory, RegisterFrame& frame,
             BreakpointTable& breakpoints, Activity& activity, const symbols::DebugInfo& debug_info,
             base::Events& events, EnterAgain enter_again);

  // True while the source window has the focus and shows the program; the front end says so.
  void SetSourceViewCurrent(bool current) { source_view_current_ = current; }
  bool SourceViewCurrent() const { return source_view_current_; }

  // One step. Does nothing when the user steps in the source view of an Imagecraft program, which
  // has no step by source lines. False when it was refused, which has been told: repeated steps
  // end.
  bool StepCommand(Calls calls, StepSource source = StepSource::User);
  // The step or the run to an address whose break byte came late: registers read, disarmed, told.
  void CompletePendingStep();
  // "Go" when nothing runs, else stop, whose result it then returns.
  std::optional<base::Stop> GoCommand();
  // Runs with the user's breakpoints, and with interrupts enabled.
  void Go();
  // Sends the break signal. Refused leaves everything as it was, and a program that takes the
  // signal later is stopped then; its detail says why the port sent none, and is empty when it did.
  base::Stop Stop();
  // Runs to the address. In software mode the user's breakpoints stop it too.
  void RunToAddress(base::Address address);
  // Runs until the program reaches one of the slots, told as PlaceReached. The user's software
  // breakpoints stop it too.
  void RunToSlots(const Slots& slots);
  // The user's breakpoint that does not count on the way there: the break module has one place.
  std::optional<base::Address> SuspendedBy(base::Address address) const;
  // The same unless PC is already there, or a step breakpoint is still planted.
  void RunToCursor(base::Address cursor);
  // To a symbol of the loaded program, or an address when the text starts with 0. Nothing when it
  // is not known.
  void RunToMain(const std::string& symbol);
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

  // The user's breakpoint was changed while the program runs: the break module was armed when the
  // run began, and takes the change only when the program runs on after its next stop.
  bool BreakpointChangeWaits() const;

  bool LinkLost() const { return link_.LinkError; }
  // PC when the last step or run began; after a step's analysis the address behind its instruction.
  base::Address step_start() const { return step_start_; }
  // What the last step executed.
  const isa::Instruction& last_instruction() const { return instruction_; }
  // Reads the instruction at PC.
  const isa::Instruction& FetchInstruction();

 private:
  bool HasStopped(link::PollWait wait);
  // While the program runs there is no monitor to ask. Where the link is lost, or no stop could
  // save the registers, nothing can run either, which is told as a stop.
  bool MayStart();
  // What is shown of a stop is asked for twice.
  void ConfirmRegisters(base::Stop& stop);
  // Tells a stop of something that could not even start, or has nothing left to wait for.
  bool RefuseAs(base::Stop stop);
  base::Stop BadStack() const;
  base::Stop NotStarted(base::Address no_swi) const;
  // One instruction. Nothing when the target has not stopped within the short wait (2 ms and a
  // poll): its completion is left to the timer. NotStarted when its end could not be armed.
  std::optional<base::Stop> SingleStep(Calls calls);
  // Reads the registers of a target that has just stopped after a step and disarms what the step
  // had armed. Nothing when the link failed before the registers were known; nothing is then
  // disarmed.
  std::optional<base::Stop> FinishStop();
  // Reads the registers of a target that has come to rest and says why and where it has; PC may
  // still have to go there. Nothing when the link failed on the way.
  std::optional<base::Stop> ReadStop();
  // Where the program has stopped if it was stopped by what was armed or planted: an SWI stacks the
  // address behind itself, and one of the program's own is left there.
  base::Address StoppedAt() const;
  // Which of both has stopped it may be told by the module alone. Before that is disarmed.
  void NoteMatch();
  // To a place or to slots.
  bool PlaceIs(base::Address pc) const;
  // What was armed or planted at that place; nothing where the program has stopped by itself.
  std::optional<base::StopReason> ArmedAt(base::Address pc) const;
  Refused ArmStep(Calls calls);
  Refused ArmPlace(base::Address address);
  void TakeBackPlanted();
  // Steps off a breakpoint that stands at PC, then runs on; the timer may have to do so.
  void LeaveBreakpoint();
  void RunOn(bool stepped);
  // RUN, with no more of what is kept of the memory dropped than the step may change.
  void LetStepRun(Calls calls);
  isa::StepRegisters Registers() const;
  void StartRunning();
  void StartToPlace();
  void GoToPlace();
  void ForgetPlace();
  void CompleteRun();
  // What the timer does once no break byte is outstanding.
  void Complete();
  // The stop of a program that has stopped by itself: completed as the timer would have done.
  base::Stop StopBesideTimer();
  base::Stop StopAfterSelfReset(const std::string& cause, base::Address last_known_pc);
  // Nothing is under way any more on a target that nobody reaches.
  base::Stop LoseLink();
  // What is known when no stop can be told.
  base::Stop NoStop(base::StopReason reason) const { return {reason, frame_.PC, {}}; }

  link::MonitorLink& link_;
  memory::Memory& memory_;
  RegisterFrame& frame_;
  BreakpointTable& breakpoints_;
  Activity& activity_;
  const symbols::DebugInfo& debug_info_;
  base::Events& events_;
  EnterAgain enter_again_;
  bool source_view_current_ = false;
  // What the run under way was let go for, and whether the break module ends it or planted SWIs.
  enum class ArmedFor { Step, Place, Slots, Run } armed_for_ = ArmedFor::Run;
  bool by_module_ = true;
  // For slots: the break module says that it has matched where an SWI may have stopped it too.
  bool module_matched_ = false;
  // A break signal that the program has not answered so far.
  bool break_requested_ = false;
  base::Address step_start_ = 0;
  isa::Instruction instruction_;
  // Where the run to an address leads that is under way or follows the step off a breakpoint.
  std::optional<base::Address> place_;
  // The same is one of slots, the place being the module's.
  std::optional<Slots> slots_;
  std::optional<base::Stop> last_stop_;
  long stops_ = 0;
};

}  // namespace brevant::control
