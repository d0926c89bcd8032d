// SPDX-License-Identifier: MIT
#include "control/run_control.h"

#include <algorithm>
#include <array>
#include <utility>

#include "base/text_format.h"
#include "base/text_number.h"
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
                       const symbols::DebugInfo& debug_info, const base::SettingsFile& settings,
                       base::Events& events)
    : link_(link),
      memory_(memory),
      frame_(frame),
      breakpoints_(breakpoints),
      activity_(activity),
      debug_info_(debug_info),
      settings_(settings),
      events_(events) {}

void RunControl::Report(base::Stop stop) {
  if (stop.reason == base::StopReason::BadStack) stop = BadStack();
  ++stops_;
  last_stop_ = std::move(stop);
  events_.Stopped(*last_stop_);
}

bool RunControl::MayStart() {
  if (activity_.WaitingForBreak() || link_.LinkError) return false;
  if (frame_.StackIsRam()) return true;
  Report(BadStack());
  return false;
}

void RunControl::StepCommand(Calls calls, StepSource source) {
  if (!MayStart()) return;
  if (debug_info_.DebugInfoLoaded && source_view_current_ && source == StepSource::User &&
      debug_info_.tool_chain == symbols::ToolChain::Imagecraft) {
    step_start_ = frame_.PC;
    return;
  }
  if (auto stop = SingleStep(calls)) {
    activity_.EndStep();
    Report(std::move(*stop));
  } else {
    activity_.AwaitStep(Pending::Step);
  }
}

std::optional<base::Stop> RunControl::SingleStep(Calls calls) {
  activity_.BeginStep(calls);
  place_.reset();
  step_start_ = frame_.PC;
  FetchInstruction();
  ArmStep(calls);
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

void RunControl::ArmStep(Calls calls) {
  const isa::StepRegisters registers = Registers();
  const auto read_byte = [this](Address address) { return memory_.ReadByte(address); };
  const auto read_word = [this](Address address) { return memory_.ReadWord(address); };
  const isa::TargetMemory memory{read_byte, read_word};
  step_start_ = Low16(instruction_.end());

  if (breakpoints_.HardwareBreakMode()) {
    breakpoints_.ArmBreakModule(isa::PredictNextPC(registers, instruction_, calls, memory));
    return;
  }
  const auto is_library_call = [this](Address address) {
    return symbols::IsLibraryCall(address, debug_info_);
  };
  const isa::BranchAnalysis branch =
      isa::AnalyseBranch(registers, instruction_, calls, memory, is_library_call);
  if (branch.kind != isa::BranchKind::None) breakpoints_.PlantStep(kBranchSlot, branch.target);
  breakpoints_.PlantStep(kFallThroughSlot, step_start_);
}

std::optional<base::Stop> RunControl::FinishStop() {
  if (!frame_.ReadRegisters()) return std::nullopt;
  const bool hardware = breakpoints_.HardwareBreakMode();
  if (!frame_.StackIsRam()) {
    breakpoints_.DisarmBreakModule();
    if (!hardware) breakpoints_.ClearStepBreakpoints();
    return BadStack();
  }
  // An SWI stacks the address behind itself.
  const Address pc = hardware ? frame_.PC : Low16(frame_.PC - 1);
  const base::StopReason reason = ReasonOfStep(pc);
  breakpoints_.DisarmBreakModule();
  if (!hardware) {
    frame_.SetPC(pc);
    breakpoints_.ClearStepBreakpoints();
  }
  return base::Stop{reason, pc, {}};
}

base::Stop RunControl::BadStack() const {
  return {base::StopReason::BadStack, frame_.PC,
          base::Format("stack pointer %04x is not RAM", frame_.ProgramSP())};
}

base::StopReason RunControl::ReasonOfStep(Address pc) const {
  const bool expected = breakpoints_.HardwareBreakMode() ? breakpoints_.armed() == pc
                                                         : breakpoints_.StepPlantedAt(pc);
  if (!expected) return base::StopReason::OwnSwi;
  if (place_) return base::StopReason::PlaceReached;
  // What was executed may have been one, whose next address is as expected.
  return instruction_.bytes[0] == kSwiOpcode ? base::StopReason::OwnSwi
                                             : base::StopReason::StepDone;
}

void RunControl::CompletePendingStep() {
  auto stop = FinishStop();
  if (!stop) return;
  const bool runs_on = activity_.PendingStep() == Pending::StepBeforeRun && frame_.StackIsRam();
  activity_.EndStep();
  if (runs_on) {
    StartRunning();
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
  step_start_ = frame_.PC;
  // Leaves a breakpoint that stands at PC, so that it does not stop the run at once.
  if (breakpoints_.Has(frame_.PC)) {
    const auto stop = SingleStep(Calls::Follow);
    if (!stop) return activity_.AwaitStep(Pending::StepBeforeRun);
    if (!frame_.StackIsRam()) {
      activity_.EndStep();
      return Report(*stop);
    }
  }
  StartRunning();
}

void RunControl::StartRunning() {
  frame_.WriteCCR(frame_.CCR & ~kCcrI);
  breakpoints_.InsertBreakpoints();
  memory_.RunTarget();
  // A run ends repeated stepping and tracing.
  activity_.BeginRun();
}

base::Stop RunControl::Stop() {
  if (link_.LinkError) return NoStop(base::StopReason::LinkLost);
  // For 11 bit times after its echo a break cancels RUN instead of reaching the program.
  link_.WaitMs(kSettleMs);
  // Since the last tick it may have stopped by itself; a break signal would then reach the monitor
  // instead of the program.
  if (activity_.WaitingForBreak() && HasStopped(PollWait::None)) return StopBesideTimer();

  if (!link_.SendBreak()) {
    return NoStop(link_.PortError().empty() ? base::StopReason::Refused
                                            : base::StopReason::LinkLost);
  }
  // A program that stopped by itself just before leaves the monitor's echo of the break on its way.
  link_.WaitMs(kSettleMs);
  link_.DiscardInput();
  breakpoints_.DisarmBreakModule();
  const Recovery recovery = frame_.RecoverInterrupted();
  if (recovery == Recovery::StoppedByItself) return StopBesideTimer();
  if (activity_.RunMode() == Mode::Running) breakpoints_.RemoveBreakpoints();
  if (activity_.StepPending()) breakpoints_.ClearStepBreakpoints();
  if (link_.LinkError) return NoStop(base::StopReason::LinkLost);
  activity_.End();
  if (!frame_.StackIsRam()) {
    Report(BadStack());
    return *last_stop_;
  }
  Report(NoStop(recovery == Recovery::Interrupted ? base::StopReason::UserBreak
                                                  : base::StopReason::NotRecovered));
  return *last_stop_;
}

base::Stop RunControl::StopBesideTimer() {
  activity_.BreakSeen();
  activity_.DropRun();
  const Mode mode = activity_.RunMode();
  // Their step is completed as a single one.
  if (mode == Mode::NStepping || mode == Mode::Tracing) activity_.AbandonOperation();
  const long before = stops_;
  Complete();
  if (link_.LinkError) return NoStop(base::StopReason::LinkLost);
  return stops_ > before ? *last_stop_ : NoStop(base::StopReason::UserBreak);
}

void RunControl::ArmPlace(Address address) {
  place_ = Low16(address);
  if (breakpoints_.HardwareBreakMode()) {
    breakpoints_.ArmBreakModule(*place_);
  } else {
    breakpoints_.PlantStep(kFallThroughSlot, *place_);
  }
}

void RunControl::RunToAddress(Address address) {
  if (!MayStart()) return;
  activity_.BeginStep(Calls::Follow);
  ArmPlace(address);
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

void RunControl::RunToCursor(Address cursor) {
  if (breakpoints_.StepPlanted() || frame_.PC == Low16(cursor)) return;
  RunToAddress(cursor);
}

void RunControl::RunToMain() {
  const std::string symbol = settings_.String(base::keys::kRunToMainSymbol);
  std::optional<Address> address;
  if (symbol.starts_with('0')) {
    address = base::ParseHex(symbol);
  } else if (debug_info_.DebugInfoLoaded) {
    address = debug_info_.SymbolTable.FindSymbolAddress(symbol);
  }
  if (address && frame_.PC != Low16(*address)) RunToAddress(*address);
}

void RunControl::RunToMainIfConfigured() {
  if (settings_.Integer(base::keys::kRunToMain) == 0) return;
  const auto tool_chain = static_cast<symbols::ToolChain>(settings_.Integer(base::keys::kCompiler));
  if (tool_chain == symbols::ToolChain::Imagecraft || tool_chain == symbols::ToolChain::Sdcc) {
    RunToMain();
  }
}

void RunControl::CompleteOnTimer() {
  if (activity_.WaitingForBreak() && HasStopped(PollWait::None)) activity_.BreakSeen();
  Operation* const operation = activity_.CurrentOperation();
  if (link_.LinkError) {
    if (operation != nullptr) operation->LinkLost();
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
  if (!frame_.ReadRegisters()) return;
  if (!frame_.StackIsRam()) {
    activity_.End();
    Report(BadStack());
    return;
  }
  // An SWI stacks the address behind itself; one of the program's own is left there.
  const Address before = Low16(frame_.PC - 1);
  const bool hardware = breakpoints_.HardwareBreakMode();
  const bool met = hardware ? breakpoints_.armed() == frame_.PC : breakpoints_.Has(before);
  if (met && !hardware) frame_.SetPC(before);
  activity_.End();
  Report({met ? base::StopReason::Breakpoint : base::StopReason::OwnSwi, frame_.PC, {}});
}

void RunControl::AbandonRunForReset() {
  if (activity_.StepPending() || breakpoints_.StepPlanted()) {
    breakpoints_.ClearStepBreakpoints();
  } else if (activity_.RunMode() == Mode::Running) {
    breakpoints_.RemoveBreakpoints();
  }
  activity_.End();
}

bool RunControl::HasStopped(PollWait wait) {
  return link_.PollBreak(wait) == 0;
}

}  // namespace brevant::control
