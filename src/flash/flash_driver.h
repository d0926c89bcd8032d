// SPDX-License-Identifier: MIT
// Brings the flash routines and their parameters into target RAM and points the stacked PC at them.
// Knows nothing of when, why and what the user is told.
#pragma once

#include "base/function_ref.h"
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
  // A block of a plan that has been prepared, up to its RUN. The routine is still there.
  void SendBlock(const FlashPlan& plan, const FlashBlock& block);
  // The block that has just run did not read back as it was sent. Means nothing once LinkError is
  // set.
  bool VerifyFailed();

 private:
  void MakeRoom();
  void TakeAll(const FlashPlan& plan);
  void Send(const FlashBlock& block);
  // Sends something. When the line alters a byte of it, which may then have written anywhere, also
  // over what was sent before, everything is sent instead; where that is altered too it is in
  // doubt, see Memory::TakeDamage.
  void SendSafely(base::FunctionRef<void()> something, base::FunctionRef<void()> everything);
  void Take(Step step, const FlashPlan& plan);
  void PlaceBlock(const FlashBlock& block);

  memory::Memory& memory_;
  control::RegisterFrame& frame_;
};

}  // namespace brevant::flash
