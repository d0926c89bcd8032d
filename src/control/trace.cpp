// SPDX-License-Identifier: MIT
#include "control/trace.h"

#include <utility>

#include "base/file_names.h"
#include "base/files.h"
#include "base/text_format.h"
#include "control/messages.h"

namespace brevant::control {

namespace {

constexpr int kStepsPerTick = 8;
constexpr const char* kDetail = "end of the trace";
constexpr const char* kBehindBreakpoint = "behind the breakpoint at %04x, end of the trace";
constexpr const char* kLogName = "trace.txt";

}  // namespace

Trace::Trace(RunControl& run, Activity& activity, const RegisterFrame& frame,
             const BreakpointTable& breakpoints, const symbols::DebugInfo& debug_info,
             const isa::SymbolNames& names, base::UserInterface& ui, TraceFiles files)
    : run_(run),
      activity_(activity),
      frame_(frame),
      breakpoints_(breakpoints),
      debug_info_(debug_info),
      names_(names),
      ui_(ui),
      files_(std::move(files)) {}

void Trace::Command() {
  if (activity_.RunMode() == Mode::Tracing) {
    Stop();
  } else if (activity_.RunMode() == Mode::Idle) {
    Start();
  }
}

void Trace::Start(long limit) {
  steps_ = 0;
  limit_ = limit;
  ring_.Clear();
  open_record_.reset();
  activity_.BeginOperation(Mode::Tracing, *this);
}

void Trace::Advance() {
  if (activity_.StepPending()) {
    run_.CompletePendingStep();
    if (run_.LinkLost()) return;
    FinishRecord();
  }
  for (int i = 0; i < kStepsPerTick; ++i) {
    if (const auto reason = EndReached()) {
      End(*reason);
      return;
    }
    if (activity_.RunMode() != Mode::Tracing || run_.LinkLost()) return;
    TraceRecord& record = open_record_.emplace();
    record.instruction.address = frame_.PC;
    record.before = {.sp = frame_.ProgramSP(), .hx = frame_.HX, .a = frame_.A, .ccr = frame_.CCR};
    if (!run_.StepCommand(Calls::Follow)) {
      // Why is told already.
      activity_.EndOperation();
      open_record_.reset();
      return WriteTraceLog();
    }
    if (activity_.StepPending()) return;
    FinishRecord();
  }
}

std::optional<base::StopReason> Trace::EndReached() const {
  if (!frame_.StackIsRam()) return base::StopReason::BadStack;
  const TraceRecord* last = ring_.Last();
  // PC is behind it already.
  if (last != nullptr && breakpoints_.Has(last->instruction.address))
    return base::StopReason::StepDone;
  if (limit_ > 0 && steps_ >= limit_) return base::StopReason::StepDone;
  return std::nullopt;
}

void Trace::Abandon() {
  open_record_.reset();
}

void Trace::FinishRecord() {
  if (!open_record_) return;
  if (!frame_.StackIsRam()) {
    // Nobody knows what the registers were behind it.
    open_record_.reset();
    return;
  }
  TraceRecord& record = *open_record_;
  const isa::Instruction& stepped = run_.last_instruction();
  const bool is_its = stepped.address == record.instruction.address;
  record.instruction = is_its ? stepped : run_.FetchInstruction();
  record.PC = frame_.PC;
  record.SP = frame_.SP;
  record.HX = frame_.HX;
  record.A = frame_.A;
  record.CCR = frame_.CCR;
  ring_.Add(record);
  ++steps_;
  open_record_.reset();
}

void Trace::Stop() {
  End(base::StopReason::UserBreak);
}

void Trace::End(base::StopReason reason) {
  activity_.EndOperation();
  open_record_.reset();
  WriteTraceLog();
  // A step that is still on its way is told when the timer completes it.
  if (activity_.StepPending()) return;
  const TraceRecord* last = ring_.Last();
  const bool behind_breakpoint = last != nullptr && breakpoints_.Has(last->instruction.address);
  run_.Report(
      {reason, frame_.PC,
       behind_breakpoint ? base::Format(kBehindBreakpoint, last->instruction.address) : kDetail});
}

std::string Trace::LogPath() const {
  return base::JoinPath(files_.image_directory ? files_.image_directory() : "", kLogName);
}

std::string Trace::LogText() const {
  const auto source_text = [this](base::Address address) -> std::optional<std::string> {
    if (!debug_info_.DebugInfoLoaded || !files_.source_text) return std::nullopt;
    const auto line = debug_info_.LineTable.LineForAddress(address);
    return line ? files_.source_text(*line) : std::nullopt;
  };
  return FormatTraceLog(ring_, names_, source_text);
}

void Trace::WriteTraceLog() {
  const std::string path = LogPath();
  const std::string error = base::ReplaceFile(path, LogText());
  if (!error.empty()) {
    ui_.ShowMessage(ToMessage(messages::kTraceLogNotWritten, path, error));
    return;
  }
  ++logs_;
  written_log_ = {path, (ring_.size() - FirstLogRecord(ring_)) * kTraceLinesPerRecord};
}

}  // namespace brevant::control
