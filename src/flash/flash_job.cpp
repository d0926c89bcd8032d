// SPDX-License-Identifier: MIT
#include "flash/flash_job.h"

#include <algorithm>
#include <utility>

#include "base/text_format.h"
#include "devices/hc08.h"
#include "flash/verdicts.h"

namespace brevant::flash {
namespace {

// Ticks of 10 ms, many times what any routine takes: its break byte was lost.
constexpr int kMostWaits = 300;
// Of places that a cancelled job did not get to; each costs a fifth of a second.
constexpr std::size_t kMostLookedAt = 16;

}  // namespace

FlashJob::FlashJob(const FlashSurroundings& surroundings)
    : with_(surroundings),
      driver_(surroundings.memory, surroundings.frame),
      runner_(surroundings.memory, surroundings.link, surroundings.security),
      blank_check_(surroundings.memory, surroundings.link, surroundings.frame) {}

bool FlashJob::Refuse() {
  status_ = {.outcome = FlashOutcome::Refused};
  return false;
}

bool FlashJob::Start(FlashPlan plan) {
  with_.activity.AbandonOperation();
  // From such a stack RUN would lead anywhere; the end is a reset anyway.
  if (!with_.frame.StackIsRam()) with_.reset_target();
  with_.memory.TakeDamage();  // of what came before
  code_before_ = with_.security.accepted();
  plan_ = std::move(plan);
  next_ = 0;
  status_ = {FlashOutcome::Running, 0, plan_.bytes(), plan_.spared, plan_.to_erase, std::nullopt};
  const FlashTask& task = *plan_.task;
  progress_text_ = task.progress_text;
  const bool awaited_by_timer = task.records_per_tick == 0;
  busy_cursor_ = task.progress_title == nullptr;
  if (busy_cursor_) with_.ui.SetBusyCursor(true);
  driver_.Prepare(plan_);
  if (awaited_by_timer && !LetRun()) return false;
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

bool FlashJob::LetRun() {
  waits_ = 0;
  const FlashBlock* const block = next_ < plan_.blocks.size() ? &plan_.blocks[next_] : nullptr;
  const auto damaged = runner_.LetRun(plan_, block);
  if (!damaged) return true;
  Fail(ToMessage(messages::kLineDamaged, *damaged, status_.bytes_programmed));
  with_.reset_target();
  return false;
}

void FlashJob::Advance() {
  if (!running()) return;
  if (plan_.task->records_per_tick > 0) {
    ProgramRecords();
    return;
  }
  if (Erasing()) {
    FinishErase();
    return;
  }
  if (!TakeBlock()) return;
  if (next_ == plan_.blocks.size()) {
    Finish(FlashOutcome::Done);
  } else {
    SendNextBlock();
  }
}

void FlashJob::SendNextBlock() {
  driver_.SendBlock(plan_, plan_.blocks[next_]);
  if (!LetRun()) return;
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
  runner_.Programmed(block);
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
  driver_.SendBlock(plan_, block);
  progress_text_ = BlockText(block);
  if (!ShowProgress()) Cancel();
  // Windows that repaint may also have let a reset through.
  if (!running()) return false;
  if (!LetRun()) return false;
  runner_.AwaitBlock();
  return TakeBlock();
}

bool FlashJob::ShowProgress() {
  return with_.ui.UpdateProgress(progress_text_, status_.bytes_programmed, status_.bytes_total);
}

void FlashJob::Wait() {
  if (progress_shown_ && !ShowProgress()) {
    Cancel();
  } else if (++waits_ > kMostWaits) {
    BreakOff(messages::kEndNotTold);
  }
}

void FlashJob::LinkLost() {
  Fail(ToMessage(*plan_.task->link_lost, status_.bytes_programmed, status_.bytes_total,
                 CurrentAddress()));
}

base::Address FlashJob::CurrentAddress() const {
  if (next_ < plan_.blocks.size()) return plan_.blocks[next_].address;
  return plan_.blocks.empty() ? 0 : plan_.blocks.back().end();
}

bool FlashJob::AwaitRoutine() {
  if (!runner_.AwaitEnd()) return false;
  with_.activity.BreakSeen();
  return true;
}

void FlashJob::Cancel() {
  if (!running()) return;
  const bool ran = with_.activity.WaitingForBreak();
  const bool ended = !ran || AwaitRoutine();
  if (ended && Erasing()) {
    FinishErase();
  } else if (!ran || !ended || TakeBlock()) {
    BreakOff(messages::kCancelled);
  }
}

void FlashJob::BreakOff(const base::MessageText& says) {
  if (Erasing()) {
    ResetAndSayWhatIsErased();
    return;
  }
  End(FlashOutcome::Cancelled);
  ResetAndKeepCode();
  SayWhatIsProgrammed(says);
}

// Runs of addresses, in the order of the plan.
std::vector<devices::MemoryRange> FlashJob::RestOfPlan() const {
  std::vector<devices::MemoryRange> rest;
  for (std::size_t n = next_; n < plan_.blocks.size(); ++n) {
    const FlashBlock& block = plan_.blocks[n];
    const auto last = block.address + static_cast<base::Address>(block.bytes.size()) - 1;
    if (!rest.empty() && rest.back().last + 1 == block.address) {
      rest.back().last = last;
    } else {
      rest.push_back({block.address, last});
    }
  }
  return rest;
}

void FlashJob::SayWhatIsProgrammed(const base::MessageText& says) {
  const auto rest = RestOfPlan();
  if (rest.size() <= kMostLookedAt && with_.security.passed() && !with_.activity.Busy()) {
    status_.blank = blank_check_.Look(rest);
  }
  std::string text = "Whether the rest is blank was not looked at.";
  if (status_.blank) {
    text = status_.blank->blank()
               ? "The rest is blank."
               : base::Format("The rest is not blank: there is something at %04x.",
                              status_.blank->used.front());
  }
  with_.ui.ShowMessage(ToMessage(says, status_.bytes_programmed, status_.bytes_total, text));
}

void FlashJob::Abandon() {
  if (running()) End(FlashOutcome::Cancelled);
}

void FlashJob::Finish(FlashOutcome outcome) {
  End(outcome);
  if (outcome == FlashOutcome::VerifyFailed) with_.ui.ShowMessage(ToMessage(messages::kNotBlank));
  for (const base::Message& remark : plan_.remarks) with_.ui.ShowMessage(remark);
  ResetAndKeepCode();
}

void FlashJob::ResetAndKeepCode() {
  flash::ResetAndKeepCode(with_.reset_target, with_.security, code_before_, with_.ui);
}

// Flash can be looked at before the reset if the target lets it be read; a part that was locked
// opens up only by the reset, to the code that a mass erase leaves.
void FlashJob::FinishErase() {
  const bool readable = with_.security.passed();
  if (readable) LookForBlank();
  if (plan_.erases_security && (!readable || SecurityCodeIsBlank())) with_.security.Erased();
  if (status_.blank && status_.blank->blank()) WriteTrimBack();
  ResetAndSayWhatIsErased();
}

void FlashJob::ResetAndSayWhatIsErased() {
  End(FlashOutcome::NotSeen);
  ResetAndKeepCode();
  if (!status_.blank && with_.security.passed() && !with_.activity.Busy()) LookForBlank();
  if (!status_.blank) {
    with_.ui.ShowMessage(ToMessage(messages::kEraseNotSeen));
  } else if (!status_.blank->blank()) {
    status_.outcome = FlashOutcome::NotErased;
    with_.ui.ShowMessage(NotErasedMessage(with_.memory.device().flash, *status_.blank));
  } else {
    status_.outcome = FlashOutcome::Done;
  }
}

bool FlashJob::SecurityCodeIsBlank() const {
  const base::Address mask = with_.memory.device().flash.page_mask();
  const auto of_code = [mask](base::Address used) {
    return (used & ~mask) == (devices::kSecurityCode & ~mask);
  };
  return status_.blank && !status_.blank->cut_short &&
         std::ranges::none_of(status_.blank->used, of_code);
}

void FlashJob::LookForBlank() {
  status_.blank = blank_check_.Look(status_.to_erase);
}

void FlashJob::WriteTrimBack() {
  if (!plan_.trim) return;
  const base::Address at = with_.memory.device().flash.trim;
  const bool written = runner_.WriteTrim(driver_, *plan_.trim);
  with_.ui.ShowMessage(
      ToMessage(written ? messages::kTrimKept : messages::kTrimNotWritten, at, *plan_.trim));
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
