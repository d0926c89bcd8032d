// SPDX-License-Identifier: MIT
#include "images/image.h"

namespace brevant::images {
namespace {}  // namespace

Image::Image() : bytes_(base::kAddressSpace), held_(base::kAddressSpace) {}

void Image::Put(base::Address address, base::Bytes bytes) {
  for (const std::uint8_t byte : bytes) {
    const base::Address at = base::Low16(address++);
    if (!held_[at]) ++size_;
    held_[at] = true;
    bytes_[at] = byte;
  }
}

std::optional<std::uint8_t> Image::At(base::Address address) const {
  const base::Address at = base::Low16(address);
  if (!held_[at]) return std::nullopt;
  return bytes_[at];
}

std::vector<Block> Image::Blocks() const {
  std::vector<Block> blocks;
  for (std::size_t at = 0; at < base::kAddressSpace; ++at) {
    if (!held_[at]) continue;
    if (at == 0 || !held_[at - 1]) blocks.push_back({static_cast<base::Address>(at), {}});
    blocks.back().bytes.push_back(bytes_[at]);
  }
  return blocks;
}

}  // namespace brevant::images
