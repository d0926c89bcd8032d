// SPDX-License-Identifier: MIT
#include "views/block_job.h"

#include "views/messages.h"
#include "views/writable.h"

namespace brevant::views {
namespace {

base::Address LastOf(const memory::Range& range) {
  return range.first + range.count - 1;
}

bool HasRegisters(const memory::Range& range, const memory::Memory& memory) {
  for (base::Address at = range.first; at <= LastOf(range); ++at) {
    if (memory.KindOf(at) == devices::MemoryKind::Registers) return true;
  }
  return false;
}

std::string WrittenText(const BlockOperation& operation, const memory::Memory& memory) {
  const memory::Range written = operation.written();
  if (written.count == 0) return "Nothing was written.";
  return base::Format(
      "%04x to %04x were written and read back%s.", written.first, LastOf(written),
      HasRegisters(written, memory) ? "; registers among them were not compared" : "");
}

}  // namespace

base::Message BlockMessage(const BlockOperation& operation, const memory::Memory& memory) {
  const std::string written = WrittenText(operation, memory);
  const memory::Range slice = operation.slice();
  switch (operation.outcome()) {
    case BlockOutcome::UnderWay:
    case BlockOutcome::Refused:
    case BlockOutcome::Done:
      break;
    case BlockOutcome::NotTaken: {
      const memory::Difference& byte = *operation.difference();
      return base::ToMessage(messages::kBlockNotTaken, byte.address, byte.found, byte.expected,
                             written);
    }
    case BlockOutcome::LineDamaged:
      return base::ToMessage(messages::kBlockLineDamaged, *operation.fault_at(), slice.first,
                             LastOf(slice), written);
    case BlockOutcome::LinkLost:
      return base::ToMessage(messages::kBlockLinkLost, written, slice.first, LastOf(slice));
    case BlockOutcome::Cancelled:
      return base::ToMessage(messages::kBlockCancelled, written);
    case BlockOutcome::Ended:
      return base::ToMessage(messages::kBlockEnded, written);
  }
  return base::ToMessage(messages::kBlockDone, written);
}

bool BlockJob::running() const {
  return activity_.CurrentOperation() == this;
}

bool BlockJob::Prepare() {
  const WriteRoom room =
      MakeRoomToWrite(operation_->destination(), operation_->source(), memory_, frame_);
  if (room.refused) {
    operation_->End(BlockOutcome::Refused, room.refused->address);
    ui_.ShowMessage(base::ToMessage(messages::kBlockRefused, room.refused->why));
  } else if (room.moved_sp) {
    ui_.ShowMessage(base::ToMessage(messages::kBlockStackMoved, *room.moved_sp));
  }
  return !room.refused;
}

bool BlockJob::Start(const BlockOperation& operation) {
  operation_ = operation;
  if (!Prepare()) return false;
  activity_.BeginOperation(control::Mode::Operation, *this);
  return true;
}

BlockOutcome BlockJob::Run(const BlockOperation& operation) {
  operation_ = operation;
  if (!Prepare()) return operation_->outcome();
  ui_.BeginProgress(operation_->Title(), operation_->ProgressText(), true);
  while (operation_->Step(memory_, crc_)) {
    if (!ui_.UpdateProgress(operation_->ProgressText(), operation_->words_done(),
                            operation_->words_total())) {
      operation_->End(BlockOutcome::Cancelled);
    }
  }
  ui_.EndProgress();
  if (operation_->outcome() != BlockOutcome::Done) {
    ui_.ShowMessage(BlockMessage(*operation_, memory_));
  }
  return operation_->outcome();
}

void BlockJob::Advance() {
  if (running() && !operation_->Step(memory_, crc_)) End(operation_->outcome());
}

void BlockJob::Abandon() {
  if (operation_) operation_->End(BlockOutcome::Ended);
}

void BlockJob::End(BlockOutcome outcome) {
  if (operation_) operation_->End(outcome);
  if (activity_.CurrentOperation() == this) activity_.EndOperation();
}

}  // namespace brevant::views
