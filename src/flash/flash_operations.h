// SPDX-License-Identifier: MIT
// Mass erase, erase of a range, and programming of a few locations. Each starts a routine in target
// RAM and returns; the timer completes it when the routine's end shows on the link.
//
// A start answers true when the routine is under way; else the user has been told and the status
// says why. One operation at a time.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/address.h"
#include "control/activity.h"
#include "flash/flash_driver.h"
#include "flash/flash_status.h"
#include "flash/messages.h"

namespace brevant::flash {

class FlashOperations final : public control::Operation {
 public:
  explicit FlashOperations(const FlashSurroundings& surroundings);

  // Asks first.
  bool MassEraseCommand();
  bool MassEraseFlash();
  // The monitor's stop-on-IRQ routine into the IRQ vector.
  bool ProgramIrqVector();
  // Any number of bytes. More than kBlockSize go in several blocks, one after the other.
  bool ProgramFlashLocations(base::Address address, base::Bytes bytes);
  // Both inclusive; whole pages are erased, see PlanErase. Asks first.
  bool EraseFlashRange(base::Address start, base::Address end);

  const FlashStatus& status() const { return status_; }
  bool running() const { return status_.outcome == FlashOutcome::Running; }
  // The user's "Cancel": resets the target at once.
  void Cancel();

  // The routine has ended.
  void Advance() override;
  // Shows progress and takes the user's cancel.
  void Wait() override;
  void LinkLost() override { FailByLink(); }
  // A reset has ended it.
  void Abandon() override;

 private:
  void Begin(bool busy_cursor);
  void PlanLocations(base::Address address, base::Bytes bytes);
  void SendBlock();
  bool Run(const MessageText& failure);
  void CompleteBlock();
  void FailByLink();
  void End(FlashOutcome outcome);
  void Doubt();
  base::Bytes CurrentBlock() const;
  base::Address CurrentAddress() const;

  FlashSurroundings with_;
  FlashDriver driver_;
  FlashStatus status_;
  const MessageText* failure_ = nullptr;
  bool busy_cursor_ = false;
  bool progress_shown_ = false;
  bool erases_security_ = false;
  // Locations being programmed.
  base::Address address_ = 0;
  std::vector<std::uint8_t> bytes_;
};

}  // namespace brevant::flash
