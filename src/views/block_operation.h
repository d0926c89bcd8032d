// SPDX-License-Identifier: MIT
// Writing a block of target memory in 16-bit words at even addresses: filled with a word, moved
// from elsewhere, or put there as given. A slice at a time, so that whoever runs it can show
// progress and stop between slices; each slice is looked at before the next. Rests on the door to
// memory.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "base/address.h"
#include "control/target_crc.h"
#include "memory/memory.h"

namespace brevant::views {

enum class BlockOutcome {
  UnderWay,
  Done,
  Refused,      // not all of the destination can be written; nothing was
  NotTaken,     // RAM that reads otherwise, see difference
  LineDamaged,  // the line damaged an exchange twice
  LinkLost,
  Cancelled,
  Ended,  // by a reset
};

class BlockOperation {
 public:
  // Addresses are made even; from and to are exchanged when from is above to. Both ends are
  // included.
  static BlockOperation Fill(base::Address from, base::Address to, std::uint16_t value);
  // Copies upwards or downwards so that overlapping blocks arrive as they were.
  static BlockOperation Move(base::Address from, base::Address to, base::Address destination);
  // An even number of bytes.
  static BlockOperation Paste(base::Address address, std::vector<std::uint8_t> bytes);

  // One slice: at most 16 words are written and read back. What is moved is confirmed by a second
  // reading before. False once it is over. RAM has to read back the same; registers read as they
  // like.
  bool Step(memory::Memory& memory, control::TargetCrc& crc);
  // Ends it with that outcome, for a reason at that address if any, unless it is over. What has
  // been written stays.
  void End(BlockOutcome outcome, std::optional<base::Address> fault_at = {});

  BlockOutcome outcome() const { return outcome_; }
  std::string Title() const;         // "Fill memory" or "Move memory"
  std::string ProgressText() const;  // with the running address
  long words_done() const { return done_; }
  long words_total() const { return total_; }

  memory::Range source() const { return {from_, kind_ == Kind::Move ? bytes_of_all() : 0}; }
  memory::Range destination() const { return {destination_, bytes_of_all()}; }
  // Into the address space.
  bool Fits() const { return destination_ + bytes_of_all() <= base::kAddressSpace; }
  // What of the destination has been written and looked at.
  memory::Range written() const;
  // The slice of the destination that comes next, or that it was at when it ended.
  memory::Range slice() const;
  // What RAM has not taken.
  const std::optional<memory::Difference>& difference() const { return difference_; }
  // Where it was refused, not taken or damaged.
  const std::optional<base::Address>& fault_at() const { return fault_at_; }

 private:
  enum class Kind { Fill, Move, Paste };

  BlockOperation(Kind kind, base::Address from, base::Address to);
  base::Address bytes_of_all() const { return static_cast<base::Address>(2 * total_); }
  BlockOutcome LookAtAll(memory::Memory& memory);
  BlockOutcome DoSlice(memory::Memory& memory, control::TargetCrc& crc);
  // What the slice is to hold. Nothing when it could not be read: fault_at says where.
  std::optional<std::vector<std::uint8_t>> BytesOf(const memory::Range& slice,
                                                   memory::Memory& memory, control::TargetCrc& crc);
  bool HoldsIt(memory::Memory& memory, base::Address address, base::Bytes expected);

  Kind kind_;
  base::Address from_;
  base::Address destination_;
  bool backwards_ = false;
  std::uint16_t value_ = 0;
  std::vector<std::uint8_t> bytes_;     // to be pasted
  std::vector<std::uint8_t> expected_;  // in the destination, as far as it was written
  std::optional<long> damage_before_;   // of the line, when the first slice began
  long done_ = 0;
  long total_;
  BlockOutcome outcome_ = BlockOutcome::UnderWay;
  std::optional<memory::Difference> difference_;
  std::optional<base::Address> fault_at_;
};

}  // namespace brevant::views
