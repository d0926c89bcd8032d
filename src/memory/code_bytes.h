// SPDX-License-Identifier: MIT
// The bytes that one run over several lines of code needs, each read from the target once. Lines
// overlap (4 bytes are looked at for an instruction of two), and at 9600 baud every transfer costs,
// so bytes are fetched in runs, ahead of their use. Rests on the door to memory.
//
// Made for one run and dropped after it: nothing that was read is shown again later.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "base/address.h"
#include "memory/memory.h"

namespace brevant::memory {

class CodeBytes {
 public:
  explicit CodeBytes(Memory& memory) : memory_(memory) {}

  // count bytes from the address on. When some of them have to be read, the run goes on to `ahead`
  // bytes from the address, as far as the address space reaches. The result holds until the next
  // call; addresses of successive calls do not go down.
  std::span<const std::uint8_t> From(base::Address address, int count, int ahead);
  // count bytes that end before the address, the run reaching back `ahead` bytes from it. Addresses
  // of successive calls do not go up; count must not be above the address.
  std::span<const std::uint8_t> Before(base::Address address, int count, int ahead);

 private:
  // Whether the address is within what has been read, or at one of its ends.
  bool Touches(base::Address address) const;
  std::vector<std::uint8_t> Read(base::Address from, base::Address to);
  base::Address end() const { return start_ + static_cast<base::Address>(bytes_.size()); }

  Memory& memory_;
  base::Address start_ = 0;
  std::vector<std::uint8_t> bytes_;  // from start_ on
};

}  // namespace brevant::memory
