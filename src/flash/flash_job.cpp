// SPDX-License-Identifier: MIT
#include "flash/flash_job.h"

#include <utility>

#include "base/text_format.h"

namespace brevant::flash {
namespace {

constexpr int kMaxPolls = 100;
constexpr const char* kBlockText = "Programming flash EEPROM\nlocation from %04x to %04x";

}  // namespace

FlashJob::FlashJob(const FlashSurroundings& surroundings)
    : with_(surroundings), driver_(surroundings.memory, surroundings.frame) {}

bool FlashJob::Refuse() {
  status_ = {FlashOutcome::Refused, 0, 0};
  return false;
}

bool FlashJob::Start(FlashPlan plan) {
  with_.activity.AbandonOperation();
  plan_ = std::move(plan);
  next_ = 0;
  status_ = {FlashOutcome::Running, 0, plan_.bytes()};
  const FlashTask& task = *plan_.task;
  progress_text_ = task.progress_text;
  const bool awaited_by_timer = task.records_per_tick == 0;
  busy_cursor_ = task.progress_title == nullptr;
  if (busy_cursor_) with_.ui.SetBusyCursor(true);
  driver_.Prepare(plan_);
  if (awaited_by_timer) LetRun();
  if (with_.memory.LinkError()) {
    Fail(ToMessage(*task.not_started));
    return false;
  }
  progress_shown_ = !busy_cursor_;
  if (progress_shown_) with_.ui.BeginProgress(task.progress_title, progress_text_, true);
  with_.activity.BeginOperation(control::Mode::Operation, *this);
  if (awaited_by_timer) with_.activity.AwaitBreak();
  return true;
}

void FlashJob::LetRun() {
  if (plan_.erases_security) with_.security.Forget();
  if (next_ < plan_.blocks.size()) {
    with_.security.Doubt(plan_.blocks[next_].address, plan_.blocks[next_].bytes.size());
  }
  with_.memory.RunTarget();
}

void FlashJob::Advance() {
  if (!running()) return;
  if (plan_.task->records_per_tick > 0) {
    ProgramRecords();
    return;
  }
  const bool erasing = plan_.blocks.empty();
  if (!erasing && !TakeBlock()) return;
  if (next_ == plan_.blocks.size()) {
    Finish(FlashOutcome::Done);
  } else {
    SendNextBlock();
  }
}

void FlashJob::SendNextBlock() {
  driver_.SendBlock(plan_.blocks[next_]);
  LetRun();
  if (with_.memory.LinkError()) {
    LinkLost();
  } else {
    with_.activity.AwaitBreak();
  }
}

// False when the job is over: the routine met a byte that did not read back, or nobody answers.
bool FlashJob::RanAsSent() {
  const bool failed = driver_.VerifyFailed();
  if (with_.memory.LinkError()) {
    LinkLost();
  } else if (failed) {
    Finish(FlashOutcome::VerifyFailed);
  }
  return running();
}

bool FlashJob::TakeBlock() {
  if (!RanAsSent()) return false;
  const FlashBlock& block = plan_.blocks[next_++];
  with_.security.Programmed(block.address, block.bytes);
  status_.bytes_programmed += static_cast<long>(block.bytes.size());
  return true;
}

void FlashJob::ProgramRecords() {
  if (!RanAsSent()) return;
  for (int records = 0; records < plan_.task->records_per_tick;) {
    if (next_ == plan_.blocks.size()) {
      Finish(FlashOutcome::Done);
      return;
    }
    const bool ends_record = plan_.blocks[next_].ends_record;
    if (!ProgramBlockAtOnce()) return;
    if (ends_record) ++records;
  }
  if (!ShowProgress()) Cancel();
}

bool FlashJob::ProgramBlockAtOnce() {
  const FlashBlock& block = plan_.blocks[next_];
  driver_.SendBlock(block);
  progress_text_ = base::Format(kBlockText, block.address, block.end());
  if (!ShowProgress()) Cancel();
  // Windows that repaint may also have let a reset through.
  if (!running()) return false;
  LetRun();
  AwaitBreakAtOnce();
  return TakeBlock();
}

void FlashJob::AwaitBreakAtOnce() {
  // A stray byte before the break byte would be taken for an echo, and shift every one after it.
  int poll = with_.link.PollBreak();
  for (int polls = 1; poll != 0 && poll != link::MonitorLink::kNoByte && polls < kMaxPolls;
       ++polls) {
    poll = with_.link.PollBreak();
  }
}

bool FlashJob::ShowProgress() {
  return with_.ui.UpdateProgress(progress_text_, status_.bytes_programmed, status_.bytes_total);
}

void FlashJob::Wait() {
  if (progress_shown_ && !ShowProgress()) Cancel();
}

void FlashJob::LinkLost() {
  Fail(ToMessage(*plan_.task->link_lost, status_.bytes_programmed, status_.bytes_total,
                 CurrentAddress()));
}

base::Address FlashJob::CurrentAddress() const {
  if (next_ < plan_.blocks.size()) return plan_.blocks[next_].address;
  return plan_.blocks.empty() ? 0 : plan_.blocks.back().end();
}

void FlashJob::Cancel() {
  if (!running()) return;
  End(FlashOutcome::Cancelled);
  with_.reset_target();
}

void FlashJob::Abandon() {
  if (running()) End(FlashOutcome::Cancelled);
}

void FlashJob::Finish(FlashOutcome outcome) {
  if (outcome == FlashOutcome::Done && plan_.erases_security) with_.security.Erased();
  End(outcome);
  if (outcome == FlashOutcome::VerifyFailed) with_.ui.ShowMessage(ToMessage(messages::kNotBlank));
  if (plan_.remark) with_.ui.ShowMessage(*plan_.remark);
  with_.reset_target();
}

void FlashJob::Fail(const base::Message& message) {
  End(FlashOutcome::LinkLost);
  with_.ui.ShowMessage(message);
}

void FlashJob::End(FlashOutcome outcome) {
  status_.outcome = outcome;
  if (std::exchange(busy_cursor_, false)) with_.ui.SetBusyCursor(false);
  if (std::exchange(progress_shown_, false)) with_.ui.EndProgress();
  if (with_.activity.CurrentOperation() == this) with_.activity.EndOperation();
}

}  // namespace brevant::flash
