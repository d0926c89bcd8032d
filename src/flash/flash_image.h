// SPDX-License-Identifier: MIT
// "Flash image": brings flash to what an image says, touching only what differs. Compares, erases
// the pages that differ, puts back what else stood in them, programs, verifies and resets. Runs to
// its end within the call; progress and the user's cancel go through the UserInterface.
//
// Bytes of an erased page that the image does not hold are read before and programmed again behind
// the erase, before anything else; an oscillator's trim among them at once.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "control/target_crc.h"
#include "flash/blank_check.h"
#include "flash/flash_compare.h"
#include "flash/flash_driver.h"
#include "flash/flash_job.h"
#include "flash/flash_runner.h"
#include "images/image.h"

namespace brevant::flash {

struct FlashImageResult {
  FlashOutcome outcome = FlashOutcome::Refused;
  long bytes = 0;   // of the image
  long spared = 0;  // of them stood in flash already, in pages that were left alone
  long pages = 0;
  long pages_spared = 0;
  std::vector<devices::MemoryRange> erased{};  // found blank
  long kept = 0;        // bytes that the image does not hold, programmed again
  long programmed = 0;  // of the image, and verified
};

class FlashImage {
 public:
  FlashImage(const FlashSurroundings& surroundings, control::TargetCrc& crc);
  FlashImage(const FlashImage&) = delete;
  FlashImage& operator=(const FlashImage&) = delete;

  // All of the image lies in flash, see FitsFlash. Done: everything that the image holds stands in
  // flash, by its CRC. Whatever else comes of it, the user has been told.
  // To be called once.
  FlashImageResult Run(const images::Image& image);

 private:
  using End = std::optional<FlashOutcome>;  // nothing: go on

  FlashOutcome Work();
  End Compare();
  End Decide();
  End Erase();
  End PutTrimBack();
  End Program();
  End Verify();

  End KeepTrim();
  End ReadKept();
  End LookWhetherErased();
  End ProgramBlock(const FlashPlan& plan, const FlashBlock& block);
  images::Image Wanted() const;
  End SayWhatIsWrong(const std::vector<PagePart>& parts);
  End Unseen(Comparison::End end);
  End Refuse(const base::Message& why);
  // Progress with the present text. False once the user has asked to cancel.
  bool Show(long done, long total);
  void Tell(FlashOutcome outcome);
  std::string HowFar() const;
  bool Touched() const { return erase_begun_ || reached_ != 0; }

  FlashSurroundings with_;
  control::TargetCrc& crc_;
  FlashDriver driver_;
  FlashRunner runner_;
  BlankCheck blank_check_;

  FlashImageResult result_;
  images::Image image_;
  std::vector<PagePart> parts_;
  std::vector<devices::MemoryRange> to_erase_;  // whole pages, neighbours as one
  images::Image kept_;                          // to be put back
  images::Image different_;                     // to be programmed
  std::optional<std::uint8_t> trim_;
  bool erase_begun_ = false;
  base::Address reached_ = 0;  // what has been programmed last, or is in doubt
  std::string text_;           // of the progress window
  std::vector<base::Message> said_;
  std::optional<link::SecurityCode> code_before_;
};

}  // namespace brevant::flash
