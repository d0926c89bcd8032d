// SPDX-License-Identifier: MIT
#include "control/line_step.h"

#include <algorithm>
#include <array>
#include <utility>

#include "frames/function_at.h"
#include "frames/source_line.h"
#include "isa/flow.h"
#include "symbols/places.h"

namespace brevant::control {
namespace {

using base::Address;
using isa::FlowKind;

// At 9600 baud one takes about 60 ms; input waits meanwhile.
constexpr int kMovesPerTick = 4;
constexpr int kMostFrames = 16;
constexpr Address kMostAhead = 24;
constexpr const char* kNoLine = "no source line is known here: one instruction";
constexpr const char* kUnknownWayBack = "no source line is known here, nor the way back to one";

}  // namespace

LineStep::LineStep(RunControl& run, Activity& activity, memory::Memory& memory,
                   const RegisterFrame& frame, const BreakpointTable& breakpoints,
                   const symbols::DebugInfo& debug_info)
    : run_(run),
      activity_(activity),
      memory_(memory),
      frame_(frame),
      breakpoints_(breakpoints),
      debug_info_(debug_info) {}

bool LineStep::HasLine(Address address) const {
  return debug_info_.DebugInfoLoaded && frames::LineAt(address, debug_info_).has_value();
}

std::string LineStep::PlaceText() const {
  if (!HasLine(frame_.PC)) return {};
  return symbols::LineName(*frames::LineAt(frame_.PC, debug_info_), debug_info_.LineTable);
}

std::string LineStep::Start(LineStepKind kind) {
  if (activity_.Busy()) return {};
  kind_ = kind;
  place_.reset();
  step_.reset();
  suspended_.reset();
  moves_ = 0;
  start_line_.reset();
  if (HasLine(frame_.PC)) start_line_ = frames::LineAt(frame_.PC, debug_info_);
  std::optional<frames::Frame> caller;
  if (kind == LineStepKind::Out && !run_.LinkLost()) {
    frames::Unwinder unwinder(memory_, debug_info_);
    caller = unwinder.CallerOf(unwinder.Innermost(frame_.PC, frame_.ProgramSP()));
    if (!caller) return "the way out is not known: " + unwinder.reason();
  }
  activity_.BeginOperation(Mode::LineStepping, *this);
  if (caller) {
    RunTo({caller->pc, caller->sp, true});
    if (!GoesOn() || activity_.StepPending()) return {};
    Arrive();
  }
  CarryOn();
  return {};
}

bool LineStep::Keeps(const base::Stop& stop) {
  using enum base::StopReason;
  if (stop.reason == StepDone || stop.reason == PlaceReached) return true;
  activity_.EndOperation();
  return false;
}

void LineStep::Advance() {
  if (activity_.StepPending()) {
    run_.CompletePendingStep();
    if (!GoesOn() || activity_.StepPending()) return;
    Arrive();
  }
  CarryOn();
}

void LineStep::CarryOn() {
  for (int i = 0; i < kMovesPerTick && GoesOn(); ++i) {
    Move();
    if (!GoesOn() || activity_.StepPending()) return;
    Arrive();
  }
}

void LineStep::Move() {
  ++moves_;
  if (place_) return RunTo(*place_);
  if (!start_line_) return Step(kind_ == LineStepKind::Into ? Calls::Follow : Calls::StepOver);
  MoveOnInLine();
}

void LineStep::MoveOnInLine() {
  const memory::Range line = frames::CodeOfLineAt(frame_.PC, debug_info_);
  // In one go: a READ for each instruction would cost more than some bytes that are not needed.
  std::array<std::uint8_t, kMostAhead> ahead{};
  const Address rest = line.first + line.count - frame_.PC;
  memory_.ReadBytes(std::span(ahead).first(std::min(rest, kMostAhead)), frame_.PC);
  bool calls = false;
  const LineCode code = LookAtLine(
      frame_.PC, line, [this](Address address) { return CodeAt(address); },
      [&](const isa::Instruction& call) {
        calls = true;
        return Enters(call);
      });
  if (memory_.LinkError()) return run_.Report({base::StopReason::LinkLost, frame_.PC, {}});
  if (code.endless) {
    // Until the user stops it; where the module has one place, no breakpoint does.
    const Place behind{base::Low16(line.first + line.count), 0, false};
    NoteSuspended(behind.address);
    return RunTo(behind);
  }
  const auto& end = code.exit ? code.exit : code.decision;
  const isa::Instruction here = CodeAt(frame_.PC);
  // A single instruction is stepped: that keeps the user's breakpoints in force.
  if (!end || end->address == frame_.PC || end->address == base::Low16(here.end())) {
    const bool call = isa::FlowOf(here).kind == FlowKind::Call;
    return Step(call && !Enters(here) ? Calls::StepOver : Calls::Follow);
  }
  // Only what is called can meet it: the line's own code is looked at where it begins.
  if (calls) NoteSuspended(end->address);
  RunTo({end->address, SpAfter(end->growth), false});
}

void LineStep::NoteSuspended(Address armed) {
  if (const auto user = run_.SuspendedBy(armed)) suspended_ = user;
}

Address LineStep::SpAfter(int growth) const {
  return base::Low16(frame_.ProgramSP() - static_cast<Address>(growth));
}

void LineStep::RunTo(const Place& place) {
  place_ = place;
  step_.reset();
  // A breakpoint where PC stands would stop the program at once.
  if (frame_.PC == place.address) {
    run_.StepCommand(Calls::Follow, StepSource::Repeated);
    return;
  }
  if (kind_ == LineStepKind::Out || place.last) NoteSuspended(place.address);
  run_.RunToAddress(place.address);
}

void LineStep::Step(Calls calls) {
  place_.reset();
  step_ = CodeAt(frame_.PC);
  step_sp_ = frame_.ProgramSP();
  const Address behind = base::Low16(step_->end());
  if (calls == Calls::StepOver && isa::FlowOf(*step_).kind == FlowKind::Call) NoteSuspended(behind);
  run_.StepCommand(calls, StepSource::Repeated);
}

void LineStep::Arrive() {
  if (breakpoints_.Has(frame_.PC)) return End(base::StopReason::Breakpoint, PlaceText());
  if (!place_) return ArriveFromStep();
  const bool there = frame_.PC == place_->address && frame_.ProgramSP() >= place_->sp;
  if (!there) return;
  const bool last = place_->last;
  place_.reset();
  // The way out may lead to code of a library.
  if (last && kind_ == LineStepKind::Out) return End(base::StopReason::StepDone, PlaceText());
  if (!HasLine(frame_.PC)) return LeaveCodeWithoutLines();
  if (last || !OnStartLine()) End(base::StopReason::StepDone, PlaceText());
}

void LineStep::ArriveFromStep() {
  const isa::Flow flow = isa::FlowOf(*step_);
  if (!start_line_)
    return End(base::StopReason::StepDone, HasLine(frame_.PC) ? PlaceText() : kNoLine);
  const bool behind = frame_.PC == base::Low16(step_->end());
  const bool call = flow.kind == FlowKind::Call && !behind;
  const symbols::Function* const function = frames::FunctionAt(frame_.PC, debug_info_);
  const bool begins = function != nullptr && function->first == frame_.PC;
  // A call inside a function, and a return to where another one begins: so calls through pointers
  // are made.
  const bool inside =
      call && !begins && function == frames::FunctionAt(step_->address, debug_info_);
  if ((call && !inside) || (begins && flow.kind == FlowKind::Return)) return EnterFunction();
  if (!HasLine(frame_.PC)) return LeaveCodeWithoutLines();
  if (flow.kind == FlowKind::Return || !OnStartLine()) End(base::StopReason::StepDone, PlaceText());
}

void LineStep::EnterFunction() {
  if (!HasLine(frame_.PC)) {
    place_ = {base::Low16(step_->end()), step_sp_, false};
    return;
  }
  const symbols::Function* const function = frames::FunctionAt(frame_.PC, debug_info_);
  const Address first =
      function == nullptr ? frame_.PC : frames::FirstStatement(*function, debug_info_);
  if (first == frame_.PC) return End(base::StopReason::StepDone, PlaceText());
  place_ = {first, 0, true};
}

void LineStep::LeaveCodeWithoutLines() {
  frames::Unwinder unwinder(memory_, debug_info_);
  std::optional<frames::Frame> at = unwinder.Innermost(frame_.PC, frame_.ProgramSP());
  for (int i = 0; i < kMostFrames && at; ++i) {
    at = unwinder.CallerOf(*at);
    if (!at || at->found == frames::Found::Perhaps || !HasLine(at->pc)) continue;
    place_ = {at->pc, at->sp, true};
    return;
  }
  End(base::StopReason::StepDone, kUnknownWayBack);
}

bool LineStep::OnStartLine() const {
  const auto line = frames::LineAt(frame_.PC, debug_info_);
  return line && line->line == start_line_->line && line->file == start_line_->file;
}

bool LineStep::Enters(const isa::Instruction& call) const {
  if (kind_ != LineStepKind::Into) return false;
  const auto target = isa::FlowOf(call).target;
  return !target || HasLine(*target);
}

isa::Instruction LineStep::CodeAt(Address address) {
  std::array<std::uint8_t, 4> bytes{};
  memory_.ReadBytes(bytes, address);
  return isa::InstructionAt(address, bytes);
}

void LineStep::End(base::StopReason reason, std::string detail) {
  activity_.EndOperation();
  place_.reset();
  run_.Report({reason, frame_.PC, std::move(detail)});
}

}  // namespace brevant::control
