// SPDX-License-Identifier: MIT
// Programs the data records of an S-record file into flash, in blocks of at most 16 bytes, a few
// records at each tick of the timer. The target is never erased first: a location that is not blank
// shows as a verify failure.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "base/address.h"
#include "control/activity.h"
#include "flash/flash_driver.h"
#include "flash/flash_status.h"
#include "images/image_file.h"

namespace brevant::flash {

class FileProgrammer final : public control::Operation {
 public:
  explicit FileProgrammer(const FlashSurroundings& surroundings);
  FileProgrammer(const FileProgrammer&) = delete;
  FileProgrammer& operator=(const FileProgrammer&) = delete;

  // Downloads the routine; the timer does the rest. False after telling the user why not.
  bool ProgramFlashFile(const std::string& path);

  const FlashStatus& status() const { return status_; }
  bool running() const { return status_.outcome == FlashOutcome::Running; }
  // What reading the file came to.
  const images::ReadReport& report() const { return file_.report; }
  // The user's "Cancel": resets the target at once. What has been programmed stays.
  void Cancel();

  // ProgramFileStep: one tick's work. Takes the user's cancel.
  void Advance() override;
  void LinkLost() override { ReportLinkLost(); }
  // A reset has ended it.
  void Abandon() override;

 private:
  enum class StepResult { Done, LinkFailure, VerifyError, Cancelled };

  StepResult ProgramFileStep();
  StepResult ProgramRecord(const images::ImageRecord& record);
  void SendBlock(base::Bytes block);
  void RunBlock();
  // Asks whether the last block read back as it was sent. LinkFailure when there is no answer.
  StepResult CheckBlock();
  void Finish(FlashOutcome outcome);
  // False once the user has asked to cancel.
  bool ShowProgress();
  void ReportLinkLost();
  void End(FlashOutcome outcome);

  FlashSurroundings with_;
  FlashDriver driver_;
  FlashStatus status_;
  std::string path_;
  images::ImageFile file_;  // the whole of it, so that a change on disk cannot mix two versions
  std::size_t next_ = 0;    // of its records
  std::string progress_text_;
  base::Address current_ = 0;                  // of the block under way
  std::optional<base::Address> previous_end_;  // where the routine's pointers stand
};

}  // namespace brevant::flash
