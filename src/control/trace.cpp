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
constexpr int kTraceCommand = 345;
constexpr const char* kLogName = "trace.txt";

}  // namespace

Trace::Trace(RunControl& run, RegisterFrame& frame, BreakpointTable& breakpoints,
             const symbols::DebugInfo& debug_info, base::Workspace& workspace,
             base::UserInterface& ui, RunIndication& indication, TraceFiles files)
    : run_(run),
      state_(run.state()),
      frame_(frame),
      breakpoints_(breakpoints),
      debug_info_(debug_info),
      workspace_(workspace),
      ui_(ui),
      indication_(indication),
      files_(std::move(files)) {
  run_.SetBackgroundOperation(Mode::Tracing, this);
}

Trace::~Trace() {
  run_.SetBackgroundOperation(Mode::Tracing, nullptr);
}

void Trace::Command() {
  if (state_.RunMode == Mode::Tracing) {
    Stop();
  } else if (state_.RunMode == Mode::Idle) {
    Start();
  }
}

void Trace::Start(long limit) {
  state_.RunMode = Mode::Tracing;
  steps_ = 0;
  limit_ = limit;
  ring_.Clear();
  open_record_.reset();
  indication_.ShowTracing(true);
}

void Trace::Advance() {
  state_.StepOver = false;
  if (state_.StepPending) {
    run_.CompletePendingStep();
    indication_.ShowTracing(true);
    if (run_.LinkLost()) return;
    FinishRecord();
  }
  for (int i = 0; i < kStepsPerTick; ++i) {
    const TraceRecord* last = ring_.Last();
    const bool at_breakpoint = last != nullptr && breakpoints_.Has(last->address);
    if (at_breakpoint || (limit_ > 0 && steps_ >= limit_)) {
      workspace_.SendCommand(kTraceCommand);
      return;
    }
    if (state_.RunMode != Mode::Tracing || run_.LinkLost()) return;
    open_record_.emplace().address = frame_.PC;
    run_.StepCommand(true);
    if (state_.StepPending) return;
    FinishRecord();
  }
}

void Trace::Abandon() {
  open_record_.reset();
  indication_.ShowTracing(false);
}

void Trace::FinishRecord() {
  if (!open_record_) return;
  TraceRecord& record = *open_record_;
  const FetchedInstruction& stepped = run_.last_instruction();
  record.code = (stepped.address == record.address ? stepped : run_.FetchInstruction()).code;
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
  state_.RunMode = Mode::Idle;
  open_record_.reset();
  indication_.OpenTraceWindow();
  WriteTraceLog();
  indication_.ShowTracing(false);
  // A step that is still on its way is shown when the timer completes it.
  if (!state_.WaitingForBreak) workspace_.RefreshViews();
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
  return FormatTraceLog(ring_, debug_info_.SymbolTable, source_text);
}

void Trace::WriteTraceLog() {
  const std::string path = LogPath();
  const std::string error = base::ReplaceFile(path, LogText());
  if (!error.empty()) {
    ui_.ShowMessage(ToMessage(messages::kTraceLogNotWritten, path, error));
    return;
  }
  indication_.ShowTraceLog(path, ring_.size() * kTraceLinesPerRecord);
}

}  // namespace brevant::control
