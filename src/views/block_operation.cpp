// SPDX-License-Identifier: MIT
#include "views/block_operation.h"

#include <algorithm>
#include <utility>

#include "base/text_format.h"

namespace brevant::views {
namespace {

constexpr base::Address kSliceBytes = 32;
constexpr base::Address kWord = 2;

base::Address Even(base::Address address) {
  return address & ~base::Address{1};
}

}  // namespace

BlockOperation::BlockOperation(Kind kind, base::Address from, base::Address to)
    : kind_(kind),
      fill_(kind == Kind::Fill),
      from_(Even(std::min(from, to))),
      to_(Even(std::max(from, to))),
      total_(static_cast<long>((to_ - from_) / kWord) + 1) {}

BlockOperation BlockOperation::Fill(base::Address from, base::Address to, std::uint16_t value) {
  BlockOperation operation(Kind::Fill, from, to);
  operation.value_ = value;
  return operation;
}

BlockOperation BlockOperation::Move(base::Address from, base::Address to,
                                    base::Address destination) {
  BlockOperation operation(Kind::MoveForwards, from, to);
  operation.destination_ = Even(destination);
  if (operation.from_ <= operation.destination_) {
    operation.kind_ = Kind::MoveBackwards;
    operation.destination_ += operation.to_ - operation.from_;
  }
  return operation;
}

bool BlockOperation::Step(link::Monitor& monitor) {
  switch (kind_) {
    case Kind::None:
      break;
    case Kind::Fill:
      FillSlice(monitor);
      break;
    case Kind::MoveForwards:
      ForwardSlice(monitor);
      break;
    case Kind::MoveBackwards:
      BackwardSlice(monitor);
      break;
  }
  if (done_ >= total_) kind_ = Kind::None;
  return kind_ != Kind::None;
}

void BlockOperation::FillSlice(link::Monitor& monitor) {
  const base::Address limit = std::min(from_ + kSliceBytes, to_);
  do {
    monitor.WriteWord(from_, value_);
    from_ += kWord;
    ++done_;
  } while (from_ < limit);
}

void BlockOperation::ForwardSlice(link::Monitor& monitor) {
  const base::Address limit = std::min(from_ + kSliceBytes, to_);
  do {
    monitor.WriteWord(destination_, monitor.ReadWord(from_));
    from_ += kWord;
    destination_ += kWord;
    ++done_;
  } while (from_ < limit);
}

void BlockOperation::BackwardSlice(link::Monitor& monitor) {
  const base::Address limit = to_ > from_ + kSliceBytes ? to_ - kSliceBytes : from_;
  bool more = true;
  while (more) {
    monitor.WriteWord(destination_, monitor.ReadWord(to_));
    ++done_;
    // A block that starts at address 0 ends there; there is nothing below it to step to.
    more = to_ > limit + kWord;
    to_ = to_ >= kWord ? to_ - kWord : 0;
    destination_ = destination_ >= kWord ? destination_ - kWord : 0;
  }
}

std::string BlockOperation::Title() const {
  return fill_ ? "Fill memory" : "Move memory";
}

std::string BlockOperation::ProgressText() const {
  if (fill_) return base::Format("\nFilling Memory at %06lx", static_cast<unsigned long>(from_));
  const base::Address running = kind_ == Kind::MoveBackwards ? to_ : from_;
  return base::Format("\nMoving Memory at %06lx", static_cast<unsigned long>(running));
}

}  // namespace brevant::views
