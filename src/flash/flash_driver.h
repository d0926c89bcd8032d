// SPDX-License-Identifier: MIT
// Brings the flash routines and their parameters into target RAM and points the stacked PC at them.
// Knows nothing of when, why and what the user is told.
#pragma once

#include "control/register_frame.h"
#include "flash/flash_plan.h"
#include "memory/memory.h"

namespace brevant::flash {

class FlashDriver {
 public:
  FlashDriver(memory::Memory& memory, control::RegisterFrame& frame)
      : memory_(memory), frame_(frame) {}

  // All that comes before the first RUN, or before the first block of a file. Needs the frame's SP
  // to be the target's.
  void Prepare(const FlashPlan& plan);
  // A block that follows, up to its RUN. The routine is still there.
  void SendBlock(const FlashBlock& block);
  // The block that has just run did not read back as it was sent. Means nothing once LinkError is
  // set.
  bool VerifyFailed();

 private:
  void MakeRoom();
  void Take(Step step, const FlashPlan& plan);
  void PlaceBlock(const FlashBlock& block);

  memory::Memory& memory_;
  control::RegisterFrame& frame_;
};

}  // namespace brevant::flash
