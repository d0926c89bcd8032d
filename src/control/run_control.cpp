// SPDX-License-Identifier: MIT
#include "control/run_control.h"

#include "base/text_number.h"
#include "isa/instruction_table.h"
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

}  // namespace

RunControl::RunControl(link::Monitor& monitor, RegisterFrame& frame, BreakpointTable& breakpoints,
                       RunState& state, const symbols::DebugInfo& debug_info,
                       const base::SettingsFile& settings, base::Workspace& workspace)
    : monitor_(monitor),
      frame_(frame),
      breakpoints_(breakpoints),
      state_(state),
      debug_info_(debug_info),
      settings_(settings),
      workspace_(workspace) {}

void RunControl::SetBackgroundOperation(Mode mode, BackgroundOperation* operation) {
  background_[mode] = operation;
}

void RunControl::StepCommand(bool from_user) {
  if (!MayStart()) return;
  if (debug_info_.DebugInfoLoaded && source_view_current_ && from_user &&
      debug_info_.tool_chain == symbols::ToolChain::Imagecraft) {
    step_start_ = frame_.PC;
    state_.StepPending = false;
    return;
  }
  if (SingleStep()) {
    workspace_.RefreshViews();
  } else {
    MarkPending();
  }
}

bool RunControl::SingleStep() {
  step_start_ = frame_.PC;
  FetchInstruction();
  ArmStep();
  monitor_.RunTarget();
  if (monitor_.LinkError()) return false;
  monitor_.link().WaitMs(kStepWaitMs);
  return HasStopped(PollWait::TimeOut) && FinishStop();
}

const FetchedInstruction& RunControl::FetchInstruction() {
  constexpr int kFirstRead = 3;
  instruction_.address = frame_.PC;
  auto& bytes = instruction_.code.bytes;
  for (int i = 0; i < kFirstRead; ++i) bytes[i] = monitor_.ReadByte(Low16(frame_.PC + i));
  instruction_.code.length = isa::InstructionLength(bytes[0], bytes[1]);
  if (instruction_.code.length > kFirstRead) {
    bytes[kFirstRead] = monitor_.ReadByte(Low16(frame_.PC + kFirstRead));
  }
  return instruction_;
}

void RunControl::ArmStep() {
  const isa::StepRegisters registers{
      .pc = frame_.PC, .sp = frame_.ProgramSP(), .hx = frame_.HX, .a = frame_.A, .ccr = frame_.CCR};
  const auto read_byte = [this](Address address) { return monitor_.ReadByte(address); };
  const auto read_word = [this](Address address) { return monitor_.ReadWord(address); };
  const isa::TargetMemory memory{read_byte, read_word};
  step_start_ = Low16(frame_.PC + instruction_.code.length);

  if (state_.HardwareBreakMode) {
    breakpoints_.ArmBreakModule(
        isa::PredictNextPC(registers, instruction_.code, state_.StepOver, memory));
    return;
  }
  const auto is_library_call = [this](Address address) {
    return symbols::IsLibraryCall(address, debug_info_);
  };
  const isa::BranchAnalysis branch =
      isa::AnalyseBranch(registers, instruction_.code, state_.StepOver, memory, is_library_call);
  if (branch.kind != isa::BranchKind::None) breakpoints_.PlantStep(kBranchSlot, branch.target);
  breakpoints_.PlantStep(kFallThroughSlot, step_start_);
}

bool RunControl::FinishStop() {
  if (!frame_.ReadRegisters()) return false;
  state_.StepOver = false;
  breakpoints_.DisarmBreakModule();
  if (!state_.HardwareBreakMode) {
    // An SWI stacks the address behind itself.
    frame_.PC = Low16(frame_.PC - 1);
    frame_.WriteProgramCounter(frame_.PC);
    ClearStep();
  }
  return true;
}

void RunControl::CompletePendingStep() {
  if (!FinishStop()) return;
  state_.StepPending = false;
  if (go_after_step_) {
    go_after_step_ = false;
    StartRunning();
    return;
  }
  workspace_.RefreshViews();
  ShowStopped();
}

std::optional<StopResult> RunControl::GoCommand() {
  if (state_.RunningShown) return Stop();
  Go();
  return std::nullopt;
}

void RunControl::Go() {
  if (!MayStart()) return;
  state_.StepOver = false;
  step_start_ = frame_.PC;
  // Leaves a breakpoint that stands at PC, so that it does not stop the run at once.
  if (breakpoints_.Has(frame_.PC) && !SingleStep()) {
    go_after_step_ = true;
    MarkPending();
    return;
  }
  StartRunning();
}

void RunControl::StartRunning() {
  // A run ends repeated stepping and tracing.
  LeaveMode();
  frame_.WriteCCR(frame_.CCR & ~kCcrI);
  breakpoints_.InsertBreakpoints(state_.HardwareBreakMode);
  monitor_.RunTarget();
  state_.RunMode = Mode::Running;
  state_.WaitingForBreak = true;
  monitor_.link().BreakPollState = 1;
  state_.RunningShown = true;
  workspace_.ShowRunning(true);
}

StopResult RunControl::Stop() {
  if (monitor_.LinkError()) return StopResult::LinkLost;
  // For 11 bit times after its echo a break cancels RUN instead of reaching the program.
  monitor_.link().WaitMs(kSettleMs);
  // Since the last tick it may have stopped by itself; a break signal would then reach the monitor
  // instead of the program.
  if (state_.WaitingForBreak && HasStopped(PollWait::None)) return StopBesideTimer();

  if (!monitor_.link().SendBreak()) {
    return monitor_.link().PortError().empty() ? StopResult::NoAnswer : StopResult::LinkLost;
  }
  // A program that stopped by itself just before leaves the monitor's echo of the break on its way.
  monitor_.link().WaitMs(kSettleMs);
  monitor_.link().DiscardInput();
  monitor_.link().BreakPollState = 0;
  breakpoints_.DisarmBreakModule();
  const Recovery recovery = frame_.RecoverInterrupted();
  if (recovery == Recovery::StoppedByItself) return StopBesideTimer();
  state_.WaitingForBreak = false;
  go_after_step_ = false;
  if (state_.RunMode == Mode::Running) breakpoints_.RemoveBreakpoints(state_.HardwareBreakMode);
  if (state_.StepPending) ClearStep();
  if (monitor_.LinkError()) return StopResult::LinkLost;
  LeaveMode();
  frame_.reread = false;
  workspace_.RefreshViews();
  ShowStopped();
  return recovery == Recovery::Interrupted ? StopResult::Stopped : StopResult::NotRecovered;
}

StopResult RunControl::StopBesideTimer() {
  state_.WaitingForBreak = false;
  go_after_step_ = false;
  if (state_.RunMode == Mode::NStepping || state_.RunMode == Mode::Tracing) LeaveMode();
  CompleteMode();
  return monitor_.LinkError() ? StopResult::LinkLost : StopResult::Stopped;
}

void RunControl::RunToAddress(Address address) {
  if (!MayStart()) return;
  if (state_.HardwareBreakMode) {
    breakpoints_.step[kFallThroughSlot].address = Low16(address);
    breakpoints_.ArmBreakModule(Low16(address));
  } else {
    breakpoints_.PlantStep(kFallThroughSlot, address);
  }
  monitor_.RunTarget();
  if (!monitor_.LinkError()) {
    monitor_.link().WaitMs(kRunToAddressWaitMs);
    if (HasStopped(PollWait::TimeOut) && FinishStop()) {
      workspace_.RefreshViews();
      return;
    }
  }
  MarkPending();
}

void RunControl::RunToCursor(Address cursor) {
  if (breakpoints_.step[kFallThroughSlot].in_use || frame_.PC == Low16(cursor)) return;
  RunToAddress(cursor);
}

void RunControl::RunToMain() {
  state_.StepOver = false;
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
  if (state_.WaitingForBreak) state_.WaitingForBreak = !HasStopped(PollWait::None);
  if (monitor_.LinkError()) return;
  if (monitor_.link().BreakPollState != 0) {
    if (!state_.RunningShown) {
      state_.RunningShown = true;
      workspace_.ShowRunning(true);
    }
    return;
  }
  CompleteMode();
}

void RunControl::CompleteMode() {
  if (state_.RunMode == Mode::Running) {
    CompleteRun();
  } else if (state_.RunMode != Mode::Idle) {
    const auto found = background_.find(state_.RunMode);
    if (found != background_.end() && found->second != nullptr) found->second->Advance();
    return;
  }
  if (state_.StepPending) CompletePendingStep();
}

void RunControl::CompleteRun() {
  breakpoints_.DisarmBreakModule();
  breakpoints_.RemoveBreakpoints(state_.HardwareBreakMode);
  if (!frame_.ReadRegisters()) return;
  // An SWI stacks the address behind itself; one of the program's own is left there.
  const Address before = Low16(frame_.PC - 1);
  if (!state_.HardwareBreakMode && breakpoints_.Has(before)) {
    frame_.PC = before;
    frame_.WriteProgramCounter(before);
  }
  frame_.reread = false;
  state_.RunMode = Mode::Idle;
  workspace_.RefreshViews();
  ShowStopped();
}

void RunControl::AbandonRunForReset() {
  state_.StepOver = false;
  if (state_.StepPending || breakpoints_.StepPlanted()) {
    ClearStep();
  } else if (state_.RunMode == Mode::Running) {
    breakpoints_.RemoveBreakpoints(state_.HardwareBreakMode);
  }
  go_after_step_ = false;
  state_.WaitingForBreak = false;
  monitor_.link().BreakPollState = 0;
  const bool busy = state_.RunMode != Mode::Idle || state_.RunningShown;
  LeaveMode();
  if (busy) ShowStopped();
}

void RunControl::LeaveMode() {
  const auto ended = background_.find(state_.RunMode);
  state_.RunMode = Mode::Idle;
  if (ended != background_.end() && ended->second != nullptr) ended->second->Abandon();
}

void RunControl::ClearStep() {
  breakpoints_.ClearStepBreakpoints();
  state_.StepPending = false;
}

void RunControl::MarkPending() {
  state_.WaitingForBreak = true;
  state_.StepPending = true;
}

void RunControl::ShowStopped() {
  state_.RunningShown = false;
  workspace_.ShowRunning(false);
}

bool RunControl::HasStopped(PollWait wait) {
  return monitor_.link().PollBreak(wait) == 0;
}

}  // namespace brevant::control
