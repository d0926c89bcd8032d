// SPDX-License-Identifier: MIT
// Filling and moving a block of target memory in 16-bit words at even addresses, a slice at a time,
// so that whoever runs it can show progress and stop between slices. Rests on the door to memory.
#pragma once

#include <cstdint>
#include <string>

#include "base/address.h"
#include "memory/memory.h"

namespace brevant::views {

class BlockOperation {
 public:
  // Addresses are made even; from and to are exchanged when from is above to. Both ends are
  // included.
  static BlockOperation Fill(base::Address from, base::Address to, std::uint16_t value);
  // Copies upwards or downwards so that overlapping blocks arrive as they were.
  static BlockOperation Move(base::Address from, base::Address to, base::Address destination);

  // One slice: at most 16 words. False once the last word has been written.
  bool Step(memory::Memory& memory);

  bool finished() const { return done_ >= total_; }
  std::string Title() const;         // "Fill memory" or "Move memory"
  std::string ProgressText() const;  // with the running address
  long words_done() const { return done_; }
  long words_total() const { return total_; }

 private:
  enum class Kind { Fill, MoveForwards, MoveBackwards };

  BlockOperation(Kind kind, base::Address from, base::Address to);
  void WriteWord(memory::Memory& memory);

  Kind kind_;
  base::Address from_;
  base::Address to_;
  base::Address destination_ = 0;
  std::uint16_t value_ = 0;
  long done_ = 0;
  long total_;
};

}  // namespace brevant::views
