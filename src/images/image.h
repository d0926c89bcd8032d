// SPDX-License-Identifier: MIT
// A program image as a value: which bytes of the target's 16-bit address space it holds.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "base/address.h"

namespace brevant::images {

struct Block {
  base::Address address = 0;
  std::vector<std::uint8_t> bytes;
  bool operator==(const Block&) const = default;
};

class Image {
 public:
  Image();
  // Later bytes replace earlier ones. Addresses wrap at 16 bits, as the monitor's pointer does.
  void Put(base::Address address, base::Bytes bytes);
  std::optional<std::uint8_t> At(base::Address address) const;
  // How many addresses hold a byte.
  long size() const { return size_; }
  bool empty() const { return size_ == 0; }
  // In ascending order; neighbours are merged.
  std::vector<Block> Blocks() const;
  bool operator==(const Image&) const = default;

 private:
  std::vector<std::uint8_t> bytes_;  // one for each address; 0 where nothing is held
  std::vector<std::uint8_t> held_;   // 1 where there is a byte
  long size_ = 0;
};

}  // namespace brevant::images
