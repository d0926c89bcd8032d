// SPDX-License-Identifier: MIT
#include "flash/flash_operations.h"

#include <algorithm>
#include <array>

#include "devices/hc08.h"

namespace brevant::flash {
namespace {

using devices::kIrqVector;

constexpr std::array kIrqVectorContent{base::HighByte(devices::kIrqStopRoutine),
                                       base::LowByte(devices::kIrqStopRoutine)};
constexpr base::Address kLastAddress = 0xFFFF;

constexpr const char* kEraseTitle = "Erase flash EEPROM";
constexpr const char* kEraseText = "Erasing flash EEPROM, please wait...  ";

}  // namespace

FlashOperations::FlashOperations(const FlashSurroundings& surroundings)
    : with_(surroundings),
      driver_(surroundings.memory, surroundings.frame, surroundings.settings) {}

void FlashOperations::Begin(bool busy_cursor) {
  with_.debug_info.DebugInfoLoaded = false;
  status_ = {};
  bytes_.clear();
  erases_security_ = false;
  busy_cursor_ = busy_cursor;
  if (busy_cursor_) with_.ui.SetBusyCursor(true);
}

bool FlashOperations::Run(const MessageText& failure) {
  failure_ = &failure;
  Doubt();
  with_.memory.RunTarget();
  if (with_.memory.LinkError()) {
    FailByLink();
    return false;
  }
  if (!running()) {
    status_.outcome = FlashOutcome::Running;
    with_.activity.BeginOperation(control::Mode::Operation, *this);
  }
  with_.activity.AwaitBreak();
  return true;
}

bool FlashOperations::MassEraseCommand() {
  if (with_.ui.ShowMessage(ToMessage(messages::kConfirmMassErase)) != base::Answer::Yes) {
    status_ = {FlashOutcome::Refused, 0, 0};
    return false;
  }
  return MassEraseFlash();
}

bool FlashOperations::MassEraseFlash() {
  Begin(true);
  erases_security_ = true;
  driver_.MakeRoom();
  driver_.LoadMassEraseRoutine();
  return Run(messages::kMassEraseFailed);
}

void FlashOperations::PlanLocations(base::Address address, base::Bytes bytes) {
  address_ = address;
  bytes_.assign(bytes.begin(), bytes.end());
  status_.bytes_total = static_cast<long>(bytes.size());
}

bool FlashOperations::ProgramIrqVector() {
  Begin(true);
  PlanLocations(kIrqVector, kIrqVectorContent);
  driver_.MakeRoom();
  driver_.LoadProgrammingRoutine();
  driver_.WriteBlockParameters(kIrqVector, kIrqVectorContent.size());
  driver_.DisableCop();
  driver_.WriteBlockData(kIrqVectorContent);
  return Run(messages::kIrqVectorFailed);
}

bool FlashOperations::ProgramFlashLocations(base::Address address, base::Bytes bytes) {
  if (bytes.empty() || address > kLastAddress) {
    const auto& why = bytes.empty() ? messages::kNoData : messages::kNotHexAddress;
    with_.ui.ShowMessage(ToMessage(why));
    status_ = {FlashOutcome::Refused, 0, 0};
    return false;
  }
  Begin(true);
  PlanLocations(address, bytes);
  driver_.MakeRoom();
  driver_.WriteBlockData(CurrentBlock());
  driver_.LoadProgrammingRoutine();
  driver_.WriteBlockParameters(address, CurrentBlock().size());
  return Run(messages::kLocationFailed);
}

bool FlashOperations::EraseFlashRange(base::Address start, base::Address end) {
  Begin(false);
  status_.outcome = FlashOutcome::Refused;
  if (with_.ui.ShowMessage(ToMessage(messages::kConfirmErase)) != base::Answer::Ok) return false;
  if (end <= start || end > kLastAddress) {
    with_.ui.ShowMessage(ToMessage(messages::kEndNotAboveStart));
    return false;
  }
  const ErasePlan plan = PlanErase(driver_.flash(), start, end);
  erases_security_ = Erases(plan, driver_.flash(), devices::kSecurityCode);
  driver_.MakeRoom();
  driver_.LoadEraseRangeRoutine(plan);
  with_.ui.BeginProgress(kEraseTitle, kEraseText, true);
  progress_shown_ = true;
  driver_.PointAtRoutine();
  return Run(messages::kEraseFailed);
}

base::Address FlashOperations::CurrentAddress() const {
  return base::Low16(address_ + static_cast<base::Address>(status_.bytes_programmed));
}

base::Bytes FlashOperations::CurrentBlock() const {
  const auto rest = base::Bytes(bytes_).subspan(static_cast<std::size_t>(status_.bytes_programmed));
  return rest.first(std::min(rest.size(), kBlockSize));
}

void FlashOperations::Doubt() {
  if (erases_security_) with_.security.Forget();
  with_.security.Doubt(CurrentAddress(), CurrentBlock().size());
}

void FlashOperations::Advance() {
  if (!running()) return;
  if (!bytes_.empty()) {
    CompleteBlock();
    return;
  }
  if (erases_security_) with_.security.Erased();
  End(FlashOutcome::Done);
  with_.reset_target();
}

void FlashOperations::CompleteBlock() {
  const bool failed = driver_.VerifyFailed();
  if (with_.memory.LinkError()) {
    FailByLink();
    return;
  }
  if (!failed) {
    with_.security.Programmed(CurrentAddress(), CurrentBlock());
    status_.bytes_programmed += static_cast<long>(CurrentBlock().size());
  }
  if (!failed && status_.bytes_programmed < status_.bytes_total) {
    SendBlock();
    return;
  }
  End(failed ? FlashOutcome::VerifyFailed : FlashOutcome::Done);
  if (failed) with_.ui.ShowMessage(ToMessage(messages::kNotBlank));
  with_.reset_target();
}

void FlashOperations::SendBlock() {
  driver_.WriteBlockData(CurrentBlock());
  driver_.WriteBlockParameters(CurrentAddress(), CurrentBlock().size());
  driver_.PointAtRoutine();
  Run(*failure_);
}

void FlashOperations::FailByLink() {
  End(FlashOutcome::LinkLost);
  with_.ui.ShowMessage(ToMessage(*failure_));
}

void FlashOperations::End(FlashOutcome outcome) {
  status_.outcome = outcome;
  if (busy_cursor_) with_.ui.SetBusyCursor(false);
  if (progress_shown_) with_.ui.EndProgress();
  busy_cursor_ = progress_shown_ = false;
  if (with_.activity.CurrentOperation() == this) with_.activity.EndOperation();
}

void FlashOperations::Cancel() {
  if (!running()) return;
  End(FlashOutcome::Cancelled);
  with_.reset_target();
}

void FlashOperations::Abandon() {
  if (running()) End(FlashOutcome::Cancelled);
}

void FlashOperations::Wait() {
  if (progress_shown_ && !with_.ui.UpdateProgress(kEraseText, 0, 0)) Cancel();
}

}  // namespace brevant::flash
