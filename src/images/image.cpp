// SPDX-License-Identifier: MIT
#include "images/image.h"

#include <algorithm>

namespace brevant::images {

Image::Image() : bytes_(base::kAddressSpace), held_(base::kAddressSpace) {}

void Image::Put(base::Address address, base::Bytes bytes) {
  for (const std::uint8_t byte : bytes) {
    const base::Address at = base::Low16(address++);
    if (held_[at] == 0) ++size_;
    held_[at] = 1;
    bytes_[at] = byte;
  }
}

std::optional<std::uint8_t> Image::At(base::Address address) const {
  const base::Address at = base::Low16(address);
  if (held_[at] == 0) return std::nullopt;
  return bytes_[at];
}

std::vector<Block> Image::Blocks() const {
  std::vector<Block> blocks;
  for (auto at = held_.begin(); (at = std::find(at, held_.end(), 1)) != held_.end();) {
    const auto end = std::find(at, held_.end(), 0);
    const auto first = bytes_.begin() + (at - held_.begin());
    blocks.push_back({static_cast<base::Address>(at - held_.begin()), {first, first + (end - at)}});
    at = end;
  }
  return blocks;
}

}  // namespace brevant::images
