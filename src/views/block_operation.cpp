// SPDX-License-Identifier: MIT
#include "views/block_operation.h"

#include <algorithm>
#include <utility>

#include "base/text_format.h"

namespace brevant::views {
namespace {

constexpr int kSliceWords = 16;
constexpr base::Address kWord = 2;

base::Address Even(base::Address address) {
  return address & ~base::Address{1};
}

}  // namespace

BlockOperation::BlockOperation(Kind kind, base::Address from, base::Address to)
    : kind_(kind),
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

bool BlockOperation::Step(memory::Memory& memory) {
  for (int i = 0; i < kSliceWords && done_ < total_; ++i) {
    WriteWord(memory);
    ++done_;
  }
  return !finished();
}

void BlockOperation::WriteWord(memory::Memory& memory) {
  switch (kind_) {
    case Kind::Fill:
      memory.WriteWord(from_, value_);
      from_ += kWord;
      break;
    case Kind::MoveForwards:
      memory.WriteWord(destination_, memory.ReadWord(from_));
      from_ += kWord;
      destination_ += kWord;
      break;
    case Kind::MoveBackwards:
      memory.WriteWord(destination_, memory.ReadWord(to_));
      to_ -= kWord;
      destination_ -= kWord;
      break;
  }
}

std::string BlockOperation::Title() const {
  return kind_ == Kind::Fill ? "Fill memory" : "Move memory";
}

std::string BlockOperation::ProgressText() const {
  if (kind_ == Kind::Fill)
    return base::Format("\nFilling Memory at %06lx", static_cast<unsigned long>(from_));
  const base::Address running = kind_ == Kind::MoveBackwards ? to_ : from_;
  return base::Format("\nMoving Memory at %06lx", static_cast<unsigned long>(running));
}

}  // namespace brevant::views
