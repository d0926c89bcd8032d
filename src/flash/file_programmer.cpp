// SPDX-License-Identifier: MIT
#include "flash/file_programmer.h"

#include <algorithm>
#include <utility>

#include "base/text_format.h"
#include "flash/flash_records.h"
#include "flash/messages.h"

namespace brevant::flash {
namespace {

constexpr int kRecordsPerTick = 5;
constexpr int kMaxPolls = 100;

constexpr const char* kTitle = "Program flash EEPROM";
constexpr const char* kStartText = "Start to program flash EEPROM...  ";
constexpr const char* kBlockText = "Programming flash EEPROM\nlocation from %04x to %04x";

}  // namespace

FileProgrammer::FileProgrammer(const FlashSurroundings& surroundings)
    : with_(surroundings),
      driver_(surroundings.memory, surroundings.frame, surroundings.settings) {}

bool FileProgrammer::ProgramFlashFile(const std::string& path) {
  with_.debug_info.DebugInfoLoaded = false;
  status_ = {FlashOutcome::Refused, 0, 0};
  file_ = images::ReadImageFile(path, ParseFlashRecords);
  next_ = 0;
  if (!file_.report.ok()) {
    with_.ui.ShowMessage(ToMessage(messages::kProgramFileNotOpened, path));
    return false;
  }
  if (with_.settings.String(base::keys::kProgramFile) != path) {
    with_.settings.Store(base::keys::kProgramFile, path);
  }
  path_ = path;
  driver_.MakeRoom();
  driver_.LoadProgrammingRoutine();
  with_.memory.WriteByte(kVerifyCount, 0);
  if (with_.memory.LinkError()) {
    status_.outcome = FlashOutcome::LinkLost;
    with_.ui.ShowMessage(ToMessage(messages::kProgramFailed));
    return false;
  }
  previous_end_.reset();
  status_ = {FlashOutcome::Running, 0, file_.report.bytes};
  progress_text_ = kStartText;
  with_.ui.BeginProgress(kTitle, progress_text_, true);
  with_.activity.BeginOperation(control::Mode::Operation, *this);
  return true;
}

void FileProgrammer::Advance() {
  if (!running()) return;
  switch (ProgramFileStep()) {
    case StepResult::Done:
      if (running() && !ShowProgress()) Cancel();
      break;
    case StepResult::Cancelled:
      break;
    case StepResult::LinkFailure:
      ReportLinkLost();
      break;
    case StepResult::VerifyError:
      Finish(FlashOutcome::VerifyFailed);
      break;
  }
}

FileProgrammer::StepResult FileProgrammer::ProgramFileStep() {
  if (const StepResult check = CheckBlock(); check != StepResult::Done) return check;
  for (int i = 0; i < kRecordsPerTick; ++i) {
    if (next_ == file_.records.size()) {
      Finish(FlashOutcome::Done);
      return StepResult::Done;
    }
    const StepResult result = ProgramRecord(file_.records[next_++]);
    if (result != StepResult::Done) return result;
  }
  return StepResult::Done;
}

FileProgrammer::StepResult FileProgrammer::CheckBlock() {
  const bool failed = driver_.VerifyFailed();
  if (with_.memory.LinkError()) return StepResult::LinkFailure;
  return failed ? StepResult::VerifyError : StepResult::Done;
}

FileProgrammer::StepResult FileProgrammer::ProgramRecord(const images::ImageRecord& record) {
  current_ = base::Low16(record.address);
  for (const base::Bytes block : SplitIntoBlocks(record.bytes)) {
    SendBlock(block);
    progress_text_ = base::Format(kBlockText, current_, *previous_end_);
    if (!ShowProgress()) Cancel();
    // Windows that repaint may also have let a reset through.
    if (!running()) return StepResult::Cancelled;
    with_.security.Doubt(current_, block.size());
    RunBlock();
    if (const StepResult check = CheckBlock(); check != StepResult::Done) return check;
    with_.security.Programmed(current_, block);
    status_.bytes_programmed += static_cast<long>(block.size());
    current_ = *previous_end_;
  }
  return StepResult::Done;
}

void FileProgrammer::SendBlock(base::Bytes block) {
  driver_.WriteBlockData(block);
  if (previous_end_ == current_) {
    driver_.WriteContinuedParameters(block.size());
  } else {
    driver_.WriteBlockParameters(current_, block.size());
  }
  previous_end_ = base::Low16(current_ + static_cast<base::Address>(block.size()));
  driver_.PointAtRoutine();
}

void FileProgrammer::RunBlock() {
  with_.memory.RunTarget();
  // A stray byte before the break byte would be taken for an echo, and shift every one after it.
  link::MonitorLink& link = with_.link;
  int poll = link.PollBreak();
  for (int polls = 1; poll != 0 && poll != link::MonitorLink::kNoByte && polls < kMaxPolls;
       ++polls) {
    poll = link.PollBreak();
  }
}

void FileProgrammer::Finish(FlashOutcome outcome) {
  if (outcome == FlashOutcome::VerifyFailed) {
    with_.ui.ShowMessage(ToMessage(messages::kNotBlank));
  }
  if (const auto skipped = file_.report.SkippedMessage(path_)) with_.ui.ShowMessage(*skipped);
  End(outcome);
  with_.reset_target();
}

void FileProgrammer::ReportLinkLost() {
  End(FlashOutcome::LinkLost);
  with_.ui.ShowMessage(ToMessage(messages::kLinkLostWhileProgramming, status_.bytes_programmed,
                                 status_.bytes_total, current_));
}

void FileProgrammer::End(FlashOutcome outcome) {
  status_.outcome = outcome;
  with_.ui.EndProgress();
  if (with_.activity.CurrentOperation() == this) with_.activity.EndOperation();
}

bool FileProgrammer::ShowProgress() {
  return with_.ui.UpdateProgress(progress_text_, status_.bytes_programmed, status_.bytes_total);
}

void FileProgrammer::Cancel() {
  if (!running()) return;
  End(FlashOutcome::Cancelled);
  with_.reset_target();
}

void FileProgrammer::Abandon() {
  if (running()) End(FlashOutcome::Cancelled);
}

}  // namespace brevant::flash
