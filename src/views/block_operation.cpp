// SPDX-License-Identifier: MIT
#include "views/block_operation.h"

#include <algorithm>
#include <utility>

#include "base/text_format.h"
#include "load/confirmed_read.h"

namespace brevant::views {
namespace {

using base::Address;

constexpr long kSliceWords = 16;
constexpr Address kWordBytes = 2;
// A bit that the line turns on its way to the host shows in no echo.
constexpr int kLooks = 2;

Address Even(Address address) {
  return address & ~Address{1};
}

}  // namespace

BlockOperation::BlockOperation(Kind kind, Address from, Address to)
    : kind_(kind),
      from_(Even(std::min(from, to))),
      destination_(from_),
      total_(static_cast<long>((Even(std::max(from, to)) - from_) / kWordBytes) + 1) {}

BlockOperation BlockOperation::Fill(Address from, Address to, std::uint16_t value) {
  BlockOperation operation(Kind::Fill, from, to);
  operation.value_ = value;
  return operation;
}

BlockOperation BlockOperation::Move(Address from, Address to, Address destination) {
  BlockOperation operation(Kind::Move, from, to);
  operation.destination_ = Even(destination);
  operation.backwards_ = operation.from_ <= operation.destination_;
  return operation;
}

BlockOperation BlockOperation::Paste(Address address, std::vector<std::uint8_t> bytes) {
  const auto count = static_cast<Address>(bytes.size());
  BlockOperation operation(Kind::Paste, address, Even(address) + count - kWordBytes);
  operation.bytes_ = std::move(bytes);
  return operation;
}

memory::Range BlockOperation::slice() const {
  const long words = std::min(kSliceWords, total_ - done_);
  const long before = backwards_ ? total_ - done_ - words : done_;
  return {destination_ + static_cast<Address>(before) * kWordBytes,
          static_cast<Address>(words) * kWordBytes};
}

memory::Range BlockOperation::written() const {
  const long before = backwards_ ? total_ - done_ : 0;
  return {destination_ + static_cast<Address>(before) * kWordBytes,
          static_cast<Address>(done_) * kWordBytes};
}

void BlockOperation::End(BlockOutcome outcome, std::optional<Address> fault_at) {
  if (outcome_ != BlockOutcome::UnderWay) return;
  outcome_ = outcome;
  fault_at_ = fault_at;
}

std::optional<std::vector<std::uint8_t>> BlockOperation::BytesOf(const memory::Range& slice,
                                                                 memory::Memory& memory,
                                                                 control::TargetCrc& crc) {
  std::vector<std::uint8_t> bytes(slice.count);
  const Address offset = slice.first - destination_;
  switch (kind_) {
    case Kind::Fill:
      for (std::size_t i = 0; i < bytes.size(); ++i) {
        bytes[i] = i % kWordBytes == 0 ? base::HighByte(value_) : base::LowByte(value_);
      }
      break;
    case Kind::Move: {
      const load::ConfirmedRead read =
          load::ReadConfirmed(memory, crc, from_ + offset, bytes, [](long, long) { return true; });
      if (read.range == load::RangeResult::Complete) break;
      fault_at_ = read.damaged.value_or(from_ + offset);
      return std::nullopt;
    }
    case Kind::Paste:
      std::copy_n(bytes_.begin() + offset, slice.count, bytes.begin());
      break;
  }
  return bytes;
}

bool BlockOperation::HoldsIt(memory::Memory& memory, Address address, base::Bytes expected) {
  std::vector<std::uint8_t> found(expected.size());
  for (int looks = 0; looks < kLooks; ++looks) {
    memory.AskBytes(found, address);
    if (memory.LinkError()) return false;
    difference_.reset();
    for (std::size_t i = 0; i < found.size() && !difference_; ++i) {
      const Address at = address + static_cast<Address>(i);
      if (found[i] != expected[i] && memory.KindOf(at) == devices::MemoryKind::Ram) {
        difference_ = memory::Difference{at, expected[i], found[i]};
      }
    }
    if (!difference_) return true;
  }
  return false;
}

BlockOutcome BlockOperation::DoSlice(memory::Memory& memory, control::TargetCrc& crc) {
  memory.TakeDamage();  // of what came before
  if (!damage_before_) damage_before_ = memory.damage();
  const memory::Range now = slice();
  const auto bytes = BytesOf(now, memory, crc);
  if (bytes) memory.WriteBytes(now.first, *bytes);
  const bool holds = bytes && HoldsIt(memory, now.first, *bytes);
  if (memory.LinkError()) return BlockOutcome::LinkLost;
  if (const auto damage = memory.TakeDamage()) fault_at_ = damage;
  if (fault_at_) return BlockOutcome::LineDamaged;
  if (!holds) {
    fault_at_ = difference_->address;
    return BlockOutcome::NotTaken;
  }
  expected_.resize(bytes_of_all());
  std::ranges::copy(*bytes, expected_.begin() + (now.first - destination_));
  done_ += static_cast<long>(now.count / kWordBytes);
  return done_ == total_ ? LookAtAll(memory) : BlockOutcome::UnderWay;
}

// An address that the line altered on its way has let a byte go anywhere, also over slices that had
// been looked at by then.
BlockOutcome BlockOperation::LookAtAll(memory::Memory& memory) {
  if (memory.damage() == *damage_before_ || HoldsIt(memory, destination_, expected_)) {
    return BlockOutcome::Done;
  }
  if (memory.LinkError()) return BlockOutcome::LinkLost;
  fault_at_ = difference_->address;
  return BlockOutcome::NotTaken;
}

bool BlockOperation::Step(memory::Memory& memory, control::TargetCrc& crc) {
  if (outcome_ == BlockOutcome::UnderWay) outcome_ = DoSlice(memory, crc);
  return outcome_ == BlockOutcome::UnderWay;
}

std::string BlockOperation::Title() const {
  switch (kind_) {
    case Kind::Fill:
      return "Fill memory";
    case Kind::Move:
      return "Move memory";
    case Kind::Paste:
      break;
  }
  return "Pasting from Clipboard...";
}

std::string BlockOperation::ProgressText() const {
  static constexpr const char* kTexts[] = {"\nFilling Memory at %06lx", "\nMoving Memory at %06lx",
                                           "\nPasting at %06lx"};
  const long word = backwards_ ? std::max(total_ - done_ - 1, 0L) : done_;
  return base::Format(kTexts[static_cast<std::size_t>(kind_)],
                      static_cast<unsigned long>(from_) + static_cast<unsigned long>(2 * word));
}

}  // namespace brevant::views
