// SPDX-License-Identifier: MIT
// Stepping by lines of source: to the next line, into calls that have lines or over all of them,
// and out of a function or handler. For every tool chain that tells lines.
//
// A line is left by one breakpoint where its code tells where it ends (line_code.h); only what has
// to decide is stepped. Calls of code without lines are passed. The stops on the way are told to
// nobody. Rests on run control.
#pragma once

#include <optional>
#include <string>

#include "control/activity.h"
#include "control/breakpoint_table.h"
#include "control/line_code.h"
#include "control/register_frame.h"
#include "control/run_control.h"
#include "frames/call_stack.h"
#include "memory/memory.h"
#include "symbols/debug_info.h"

namespace brevant::control {

enum class LineStepKind {
  Into,  // a call that has lines: stops at the function's first statement
  Over,
  Out,  // behind the call of the present function, or where its handler has interrupted
};

class LineStep final : public Operation {
 public:
  LineStep(RunControl& run, Activity& activity, memory::Memory& memory, const RegisterFrame& frame,
           const BreakpointTable& breakpoints, const symbols::DebugInfo& debug_info);
  LineStep(const LineStep&) = delete;
  LineStep& operator=(const LineStep&) = delete;

  // Begins, and ends at once where that takes few steps; else the timer goes on. Empty, or why
  // nothing was done: the way out is not known. Nothing while something else is under way. Where no
  // line is known at PC one instruction is run, which the stop's detail says.
  std::string Start(LineStepKind kind);
  // The user's breakpoint that could not count for a part of the last line step: the break module
  // has one place.
  std::optional<base::Address> suspended() const { return suspended_; }
  // Steps and runs of the last line step.
  long moves() const { return moves_; }

  void Advance() override;
  void Abandon() override { place_.reset(); }
  bool Keeps(const base::Stop& stop) override;

 private:
  // A place to run to; deeper activations of the same code come by with a lower SP.
  struct Place {
    base::Address address = 0;
    base::Address sp = 0;  // the program's own, at least
    bool last = false;     // reaching it ends the line step
  };

  // Carries on until it has to wait, is done, or has done enough for one tick.
  void CarryOn();
  // One step or run. The step's own end is looked at by Arrive.
  void Move();
  void MoveOnInLine();
  void RunTo(const Place& place);
  void Step(Calls calls);
  // The break module is to be armed there, and code of others runs meanwhile.
  void NoteSuspended(base::Address armed);
  // A step or run has ended: what comes next.
  void Arrive();
  void ArriveFromStep();
  void EnterFunction();
  // Out of code without lines, into which a return or a call has led.
  void LeaveCodeWithoutLines();
  bool GoesOn() const { return activity_.CurrentOperation() == this; }
  bool HasLine(base::Address address) const;
  bool OnStartLine() const;
  // The call is stopped at: it may lead to code with lines.
  bool Enters(const isa::Instruction& call) const;
  isa::Instruction CodeAt(base::Address address);
  base::Address SpAfter(int growth) const;
  void End(base::StopReason reason, std::string detail);
  std::string PlaceText() const;

  RunControl& run_;
  Activity& activity_;
  memory::Memory& memory_;
  const RegisterFrame& frame_;
  const BreakpointTable& breakpoints_;
  const symbols::DebugInfo& debug_info_;
  LineStepKind kind_ = LineStepKind::Into;
  std::optional<symbols::SourceLine> start_line_;
  std::optional<Place> place_;            // that is run to
  std::optional<isa::Instruction> step_;  // that is executed, towards no place
  base::Address step_sp_ = 0;             // before it
  std::optional<base::Address> suspended_;
  long moves_ = 0;
};

}  // namespace brevant::control
