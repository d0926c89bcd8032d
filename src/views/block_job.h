// SPDX-License-Identifier: MIT
// The block operation under way: one for the whole program, carried on by the timer, a slice a
// tick, or to its end at once. What it comes to is a message for the user.
#pragma once

#include <optional>

#include "base/user_interface.h"
#include "control/activity.h"
#include "control/register_frame.h"
#include "control/target_crc.h"
#include "memory/memory.h"
#include "views/block_operation.h"

namespace brevant::views {

class BlockJob final : public control::Operation {
 public:
  BlockJob(memory::Memory& memory, control::TargetCrc& crc, control::RegisterFrame& frame,
           control::Activity& activity, base::UserInterface& ui)
      : memory_(memory), crc_(crc), frame_(frame), activity_(activity), ui_(ui) {}
  BlockJob(const BlockJob&) = delete;
  BlockJob& operator=(const BlockJob&) = delete;

  // Nothing is under way. First it is made sure that all of the destination can be written.

  // The timer carries it on. False when it was refused; the user has been told.
  bool Start(const BlockOperation& operation);
  // To its end within the call, with progress that can be cancelled. The user is told what it came
  // to unless it is Done.
  BlockOutcome Run(const BlockOperation& operation);

  // The last one; nothing before the first.
  const std::optional<BlockOperation>& operation() const { return operation_; }
  // The timer has it.
  bool running() const;
  // By the user, between two ticks.
  void Cancel() { End(BlockOutcome::Cancelled); }

  void Advance() override;
  void LinkLost() override { End(BlockOutcome::LinkLost); }
  void Abandon() override;

 private:
  bool Prepare();
  void End(BlockOutcome outcome);

  memory::Memory& memory_;
  control::TargetCrc& crc_;
  control::RegisterFrame& frame_;
  control::Activity& activity_;
  base::UserInterface& ui_;
  std::optional<BlockOperation> operation_;
};

// What has become of an operation that is over, and how far it got.
base::Message BlockMessage(const BlockOperation& operation, const memory::Memory& memory);

}  // namespace brevant::views
