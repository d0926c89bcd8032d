// SPDX-License-Identifier: MIT
#include "images/image.h"

#include <cstring>

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
  // Most of the address space is empty, and memchr passes over it many times faster than a loop.
  const auto find = [this](std::size_t from, std::uint8_t held) {
    const void* const found = std::memchr(held_.data() + from, held, held_.size() - from);
    return found ? static_cast<std::size_t>(static_cast<const std::uint8_t*>(found) - held_.data())
                 : held_.size();
  };
  std::vector<Block> blocks;
  for (std::size_t at = 0; (at = find(at, 1)) != held_.size();) {
    const std::size_t end = find(at, 0);
    const base::Bytes bytes(bytes_.data() + at, end - at);
    blocks.push_back({static_cast<base::Address>(at), {bytes.begin(), bytes.end()}});
    at = end;
  }
  return blocks;
}

}  // namespace brevant::images
