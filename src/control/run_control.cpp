// SPDX-License-Identifier: MIT
#include "control/run_control.h"

#include <algorithm>
#include <array>
#include <utility>

#include "base/text_format.h"
#include "base/text_number.h"
#include "devices/hc08.h"
#include "isa/next_pc.h"
#include "symbols/library_names.h"

namespace brevant::control {

namespace {

using base::Address;
using base::Low16;
using link::PollWait;

constexpr int kStepWaitMs = 2;
constexpr int kRunToAddressWaitMs = 20;
constexpr int kSettleMs = 2;
constexpr int kFallThroughSlot = 0, kBranchSlot = 1;
constexpr std::uint8_t kCalls[] = {0xAD, 0xBD, 0xCD, 0xDD, 0xED, 0xFD};  // BSR, JSR
// RTI, TAP, STOP, WAIT, CLI: behind them interrupts may be let in.
constexpr std::uint8_t kUnmasking[] = {0x80, 0x84, 0x8E, 0x8F, 0x9A};

}  // namespace

RunControl::RunControl(link::MonitorLink& link, memory::Memory& memory, RegisterFrame& frame,
                       BreakpointTable& breakpoints, Activity& activity,
                       const symbols::DebugInfo& debug_info, base::Events& events,
                       EnterAgain enter_again)
    : link_(link),
      memory_(memory),
      frame_(frame),
      breakpoints_(breakpoints),
      activity_(activity),
      debug_info_(debug_info),
      events_(events),
      enter_again_(std::move(enter_again)) {}

void RunControl::Report(base::Stop stop) {
  if (stop.reason == base::StopReason::BadStack) stop = BadStack();
  if (Operation* const operation = activity_.CurrentOperation()) {
    if (operation->Keeps(stop)) return;
  }
  ConfirmRegisters(stop);
  ++stops_;
  last_stop_ = std::move(stop);
  events_.Stopped(*last_stop_);
}

// Not between the steps of an operation, which would take a third longer for it.
void RunControl::ConfirmRegisters(base::Stop& stop) {
  if (link_.LinkError || activity_.Busy() || !frame_.StackIsRam()) return;
  const Address read = frame_.PC;
  frame_.Confirm();
  if (link_.LinkError) {
    stop = NoStop(base::StopReason::LinkLost);
  } else if (stop.pc == read) {
    stop.pc = frame_.PC;
  }
}

bool RunControl::MayStart() {
  if (activity_.WaitingForBreak() || activity_.RunMode() == Mode::Operation) return false;
  if (link_.LinkError) return RefuseAs(NoStop(base::StopReason::LinkLost));
  if (!frame_.StackIsRam()) return RefuseAs(BadStack());
  break_requested_ = false;
  return true;
}

bool RunControl::RefuseAs(base::Stop stop) {
  activity_.EndStep();
  Report(std::move(stop));
  return false;
}

bool RunControl::StepCommand(Calls calls, StepSource source) {
  // There is no monitor to ask, and a step under way goes on.
  if (activity_.WaitingForBreak()) return true;
  if (!MayStart()) return false;
  if (debug_info_.DebugInfoLoaded && source_view_current_ && source == StepSource::User &&
      debug_info_.tool_chain == symbols::ToolChain::Imagecraft) {
    step_start_ = frame_.PC;
    return true;
  }
  ForgetPlace();
  if (auto stop = SingleStep(calls)) {
    if (stop->reason == base::StopReason::NotStarted) return RefuseAs(std::move(*stop));
    activity_.EndStep();
    Report(std::move(*stop));
  } else {
    activity_.AwaitStep(Pending::Step);
  }
  return true;
}

std::optional<base::Stop> RunControl::SingleStep(Calls calls) {
  activity_.BeginStep(calls);
  step_start_ = frame_.PC;
  FetchInstruction();
  if (const Refused refused = ArmStep(calls)) return NotStarted(*refused);
  LetStepRun(calls);
  if (link_.LinkError) return std::nullopt;
  link_.WaitMs(kStepWaitMs);
  if (HasStopped(PollWait::TimeOut)) return FinishStop();
  // Whatever keeps it busy for so long may have written anything.
  memory_.DropAll();
  return std::nullopt;
}

void RunControl::LetStepRun(Calls calls) {
  const std::uint8_t opcode = instruction_.bytes[0];
  const bool call = std::ranges::find(kCalls, opcode) != std::end(kCalls);
  // In software mode a call to a library routine is stepped over too.
  if (call && (calls == Calls::StepOver || !breakpoints_.HardwareBreakMode())) {
    memory_.RunTarget();
    return;
  }
  const bool unmasks = std::ranges::find(kUnmasking, opcode) != std::end(kUnmasking);
  if ((frame_.CCR & kCcrI) == 0 || unmasks) {
    // An interrupt may come in between, whose handler writes RAM. Nobody programs flash in so short
    // a time.
    memory_.RunTarget(memory_.Ram());
    return;
  }
  const isa::StepEffects effects = isa::PredictEffects(Registers(), instruction_);
  memory_.RunTarget(std::array{memory::Range{effects.first, static_cast<Address>(effects.count)}});
}

isa::StepRegisters RunControl::Registers() const {
  return {.sp = frame_.ProgramSP(), .hx = frame_.HX, .a = frame_.A, .ccr = frame_.CCR};
}

const isa::Instruction& RunControl::FetchInstruction() {
  std::array<std::uint8_t, 4> bytes{};
  memory_.ReadChecked(bytes, frame_.PC);
  instruction_ = isa::InstructionAt(frame_.PC, bytes);
  return instruction_;
}

Refused RunControl::ArmStep(Calls calls) {
  const isa::StepRegisters registers = Registers();
  const auto read_byte = [this](Address address) { return memory_.ReadByte(address); };
  const auto read_word = [this](Address address) { return memory_.ReadWord(address); };
  const isa::TargetMemory memory{read_byte, read_word};
  step_start_ = Low16(instruction_.end());
  armed_for_ = ArmedFor::Step;
  const auto arm_module = [&]() -> Refused {
    by_module_ = true;
    breakpoints_.ArmBreakModule(isa::PredictNextPC(registers, instruction_, calls, memory));
    return std::nullopt;
  };
  if (breakpoints_.HardwareBreakMode()) return arm_module();
  const auto is_library_call = [this](Address address) {
    return symbols::IsLibraryCall(address, debug_info_);
  };
  const isa::BranchAnalysis branch =
      isa::AnalyseBranch(registers, instruction_, calls, memory, is_library_call);
  const bool branches = branch.kind != isa::BranchKind::None;
  // An SWI over the instruction itself would keep it from being executed.
  if (branches && branch.target == instruction_.address) return arm_module();
  by_module_ = false;
  Refused refused;
  if (branches) refused = breakpoints_.PlantStep(kBranchSlot, branch.target);
  if (!refused) refused = breakpoints_.PlantStep(kFallThroughSlot, step_start_);
  if (refused) breakpoints_.ClearStepBreakpoints();
  return refused;
}

std::optional<base::Stop> RunControl::FinishStop() {
  NoteMatch();
  auto stop = ReadStop();
  if (!stop) return std::nullopt;
  breakpoints_.DisarmBreakModule();
  if (stop->pc != frame_.PC) frame_.SetPC(stop->pc);
  TakeBackPlanted();
  return stop;
}

void RunControl::TakeBackPlanted() {
  // A slot may stand at the place of a breakpoint, whose SWI it then has saved.
  breakpoints_.ClearStepBreakpoints();
  breakpoints_.RemoveBreakpoints();
}

std::optional<base::Stop> RunControl::ReadStop() {
  if (!frame_.ReadRegisters(break_requested_ ? StackRead::WithInterrupted : StackRead::Frame)) {
    return std::nullopt;
  }
  if (!frame_.StackIsRam()) return BadStack();
  // Where nothing was armed or planted, the line may have altered what was read: looked at again.
  if (!ArmedAt(StoppedAt()) && !frame_.ReadRegisters(StackRead::WithInterrupted)) {
    return std::nullopt;
  }
  const Address pc = StoppedAt();
  if (const auto reason = ArmedAt(pc)) return base::Stop{*reason, pc, {}};
  if (std::exchange(break_requested_, false) && frame_.IsStopRoutine()) {
    const bool recovered = frame_.TakeInterrupted();
    if (link_.LinkError) return std::nullopt;
    return NoStop(recovered ? base::StopReason::UserBreak : base::StopReason::NotRecovered);
  }
  const auto armed = breakpoints_.armed();
  if (by_module_ && armed && memory_.AskByte(Low16(pc - 1)) != kSwiOpcode) {
    // The break module acts on operands too, behind whose instruction it then stops.
    return base::Stop{ArmedAt(*armed).value_or(base::StopReason::Breakpoint), pc,
                      base::Format("%04x is inside an instruction", *armed)};
  }
  return NoStop(base::StopReason::OwnSwi);
}

Address RunControl::StoppedAt() const {
  const Address before = Low16(frame_.PC - 1);
  if (!by_module_) return before;
  if (armed_for_ != ArmedFor::Slots || module_matched_) return frame_.PC;
  const bool swi = slots_->by_swi == before ||
                   (!breakpoints_.HardwareBreakMode() && breakpoints_.SwiInsertedAt(before));
  return swi ? before : frame_.PC;
}

void RunControl::NoteMatch() {
  if (module_matched_ || armed_for_ != ArmedFor::Slots || breakpoints_.HardwareBreakMode()) return;
  if (!breakpoints_.SwiInsertedAt(Low16(slots_->by_module - 1))) return;
  module_matched_ = (memory_.AskByte(devices::kBRKSCR) & devices::kBreakMatched) != 0;
}

bool RunControl::PlaceIs(Address pc) const {
  return slots_ ? slots_->Has(pc) : place_ == pc;
}

std::optional<base::StopReason> RunControl::ArmedAt(Address pc) const {
  const bool at_end = by_module_ ? breakpoints_.armed() == pc : breakpoints_.StepPlantedAt(pc);
  switch (armed_for_) {
    case ArmedFor::Step:
      if (!at_end) return std::nullopt;
      // What was executed may have been one, whose next address is as expected.
      return instruction_.bytes[0] == kSwiOpcode ? base::StopReason::OwnSwi
                                                 : base::StopReason::StepDone;
    case ArmedFor::Place:
      if (at_end) return base::StopReason::PlaceReached;
      if (by_module_) return std::nullopt;
      break;
    case ArmedFor::Slots:
      if (!breakpoints_.HardwareBreakMode() && breakpoints_.SwiInsertedAt(pc)) {
        return base::StopReason::Breakpoint;
      }
      return slots_->Has(pc) ? std::optional(base::StopReason::PlaceReached) : std::nullopt;
    case ArmedFor::Run:
      break;
  }
  if (breakpoints_.InsertedAt(pc)) return base::StopReason::Breakpoint;
  return std::nullopt;
}

base::Stop RunControl::BadStack() const {
  return {base::StopReason::BadStack, frame_.PC,
          base::Format("stack pointer %04x is not RAM", frame_.ProgramSP())};
}

base::Stop RunControl::NotStarted(Address no_swi) const {
  return {base::StopReason::NotStarted, frame_.PC,
          base::Format("no SWI can be planted at %04x: only RAM takes software breakpoints, use "
                       "hardware mode",
                       no_swi)};
}

void RunControl::CompletePendingStep() {
  auto stop = FinishStop();
  if (!stop) return;
  const bool runs_on = activity_.PendingStep() == Pending::StepBeforeRun &&
                       stop->reason == base::StopReason::StepDone;
  activity_.EndStep();
  if (runs_on) {
    RunOn(true);
  } else {
    Report(std::move(*stop));
  }
}

std::optional<base::Stop> RunControl::GoCommand() {
  if (activity_.RunningShown()) return Stop();
  Go();
  return std::nullopt;
}

void RunControl::Go() {
  if (!MayStart()) return;
  ForgetPlace();
  LeaveBreakpoint();
}

void RunControl::LeaveBreakpoint() {
  step_start_ = frame_.PC;
  // One that stands at PC must not stop the run at once.
  const bool leaves = breakpoints_.Has(frame_.PC);
  if (leaves) {
    auto stop = SingleStep(Calls::Follow);
    if (!stop) return activity_.AwaitStep(Pending::StepBeforeRun);
    if (stop->reason != base::StopReason::StepDone) {
      RefuseAs(std::move(*stop));
      return;
    }
  }
  RunOn(leaves);
}

void RunControl::RunOn(bool stepped) {
  if (!place_) {
    StartRunning();
  } else if (stepped && PlaceIs(frame_.PC)) {
    RefuseAs({base::StopReason::PlaceReached, frame_.PC, {}});
  } else {
    StartToPlace();
  }
}

void RunControl::StartRunning() {
  frame_.WriteCCR(frame_.CCR & ~kCcrI);
  armed_for_ = ArmedFor::Run;
  by_module_ = breakpoints_.HardwareBreakMode();
  if (const Refused refused = breakpoints_.InsertBreakpoints()) {
    breakpoints_.RemoveBreakpoints();
    RefuseAs(NotStarted(*refused));
    return;
  }
  memory_.RunTarget();
  // A run ends repeated stepping and tracing.
  activity_.BeginRun();
}

base::Stop RunControl::Stop() {
  if (link_.LinkError) return LoseLink();
  if (activity_.Passing() && !activity_.WaitingForBreak()) {
    // Between two steps nothing runs that a break signal could reach.
    activity_.End();
    Report(NoStop(base::StopReason::UserBreak));
    return *last_stop_;
  }
  const Address last_known_pc = frame_.PC;
  // For 11 bit times after its echo a break cancels RUN instead of reaching the program.
  link_.WaitMs(kSettleMs);
  // Since the last tick it may have stopped by itself; a break signal would then reach the monitor
  // instead of the program.
  if (activity_.WaitingForBreak() && HasStopped(PollWait::None)) return StopBesideTimer();

  break_requested_ = true;
  if (!link_.SendBreak()) {
    if (link_.LinkError) return LoseLink();
    return {base::StopReason::Refused, frame_.PC, link_.SignalError()};
  }
  // A program that stopped by itself just before leaves the monitor's echo of the break on its way.
  link_.WaitMs(kSettleMs);
  link_.DiscardInput();
  NoteMatch();
  breakpoints_.DisarmBreakModule();
  if (!frame_.ReadRegisters(StackRead::WithInterrupted)) {
    if (const auto cause = enter_again_()) return StopAfterSelfReset(*cause, last_known_pc);
    if (link_.LinkError || !frame_.ReadRegisters(StackRead::WithInterrupted)) return LoseLink();
  }
  if (!frame_.StackIsRam() || ArmedAt(StoppedAt()) || !frame_.IsStopRoutine()) {
    return StopBesideTimer();
  }
  const bool recovered = frame_.TakeInterrupted();
  TakeBackPlanted();
  if (link_.LinkError) return LoseLink();
  activity_.End();
  Report(NoStop(recovered ? base::StopReason::UserBreak : base::StopReason::NotRecovered));
  return *last_stop_;
}

base::Stop RunControl::LoseLink() {
  link_.LinkError = true;
  if (activity_.Busy()) {
    activity_.End();
    Report(NoStop(base::StopReason::LinkLost));
  }
  return NoStop(base::StopReason::LinkLost);
}

base::Stop RunControl::StopAfterSelfReset(const std::string& cause, Address last_known_pc) {
  TakeBackPlanted();
  if (!frame_.ReadRegisters()) return LoseLink();
  activity_.End();
  Report({base::StopReason::McuReset, frame_.PC,
          base::Format("%s, last known PC %04x", cause.c_str(), last_known_pc)});
  return *last_stop_;
}

base::Stop RunControl::StopBesideTimer() {
  activity_.BreakSeen();
  activity_.DropRun();
  const Mode mode = activity_.RunMode();
  // Their step is completed as a single one.
  if (mode == Mode::NStepping || mode == Mode::Tracing || activity_.Passing()) {
    activity_.AbandonOperation();
  }
  const long before = stops_;
  Complete();
  if (link_.LinkError) return LoseLink();
  if (stops_ > before) return *last_stop_;
  // Nothing ran; what has just been read is shown.
  frame_.Confirm();
  return NoStop(base::StopReason::UserBreak);
}

void RunControl::StartToPlace() {
  activity_.BeginStep(Calls::Follow);
  armed_for_ = slots_ ? ArmedFor::Slots : ArmedFor::Place;
  by_module_ = slots_ || breakpoints_.HardwareBreakMode();
  module_matched_ = false;
  if (const Refused refused = ArmPlace(*place_)) {
    TakeBackPlanted();
    RefuseAs(NotStarted(*refused));
    return;
  }
  memory_.RunTarget();
  if (!link_.LinkError) {
    link_.WaitMs(kRunToAddressWaitMs);
    if (HasStopped(PollWait::TimeOut)) {
      if (auto stop = FinishStop()) {
        activity_.EndStep();
        Report(std::move(*stop));
        return;
      }
    }
  }
  activity_.AwaitStep(Pending::RunTo);
}

Refused RunControl::ArmPlace(Address address) {
  if (!breakpoints_.HardwareBreakMode()) {
    if (const Refused refused = breakpoints_.InsertBreakpoints()) return refused;
  }
  if (by_module_) {
    breakpoints_.ArmBreakModule(address);
    return std::nullopt;
  }
  return breakpoints_.PlantStep(kFallThroughSlot, address);
}

std::optional<Address> RunControl::SuspendedBy(Address address) const {
  if (!breakpoints_.HardwareBreakMode() || breakpoints_.count() < 1) return std::nullopt;
  const Address armed = breakpoints_.entries()[breakpoints_.NthBreakpoint(0)].address;
  return armed == Low16(address) ? std::nullopt : std::optional(armed);
}

void RunControl::RunToAddress(Address address) {
  if (!MayStart()) return;
  ForgetPlace();
  place_ = Low16(address);
  GoToPlace();
}

void RunControl::RunToSlots(const Slots& slots) {
  if (!MayStart()) return;
  slots_ = slots;
  place_ = slots.by_module;
  GoToPlace();
}

void RunControl::GoToPlace() {
  if (breakpoints_.HardwareBreakMode()) {
    StartToPlace();
  } else {
    LeaveBreakpoint();
  }
}

void RunControl::ForgetPlace() {
  place_.reset();
  slots_.reset();
}

bool RunControl::BreakpointChangeWaits() const {
  if (activity_.RunMode() != Mode::Running || armed_for_ != ArmedFor::Run) return false;
  return breakpoints_.HardwareBreakMode() && breakpoints_.armed() != breakpoints_.First();
}

void RunControl::RunToCursor(Address cursor) {
  if (breakpoints_.StepPlanted() || frame_.PC == Low16(cursor)) return;
  RunToAddress(cursor);
}

void RunControl::RunToMain(const std::string& symbol) {
  std::optional<Address> address;
  if (symbol.starts_with('0')) {
    address = base::ParseHex(symbol);
  } else if (debug_info_.DebugInfoLoaded) {
    address = debug_info_.SymbolTable.FindSymbolAddress(symbol);
  }
  if (address && frame_.PC != Low16(*address)) RunToAddress(*address);
}

void RunControl::CompleteOnTimer() {
  if (activity_.WaitingForBreak() && HasStopped(PollWait::None)) activity_.BreakSeen();
  Operation* const operation = activity_.CurrentOperation();
  if (link_.LinkError) {
    if (operation != nullptr) operation->LinkLost();
    LoseLink();
  } else if (activity_.WaitingForBreak()) {
    activity_.ShowRunning();
    if (operation != nullptr) operation->Wait();
  } else {
    Complete();
  }
}

void RunControl::Complete() {
  if (activity_.RunMode() == Mode::Running) {
    CompleteRun();
  } else if (Operation* const operation = activity_.CurrentOperation()) {
    operation->Advance();
  } else if (activity_.StepPending()) {
    CompletePendingStep();
  }
}

void RunControl::CompleteRun() {
  breakpoints_.DisarmBreakModule();
  breakpoints_.RemoveBreakpoints();
  auto stop = ReadStop();
  if (!stop) return;
  if (stop->pc != frame_.PC) frame_.SetPC(stop->pc);
  activity_.End();
  Report(std::move(*stop));
}

void RunControl::AbandonRunForReset() {
  TakeBackPlanted();
  activity_.End();
}

bool RunControl::HasStopped(PollWait wait) {
  if (link_.PollBreak(wait) == 0) return true;
  // While the target runs nothing else shows that the port is gone.
  if (!link_.PortError().empty()) link_.LinkError = true;
  return false;
}

}  // namespace brevant::control
