// SPDX-License-Identifier: MIT
#include "memory/code_bytes.h"

#include <algorithm>

namespace brevant::memory {
namespace {

using base::Address;
using base::kAddressSpace;

}  // namespace

std::span<const std::uint8_t> CodeBytes::From(Address address, int count, int ahead) {
  if (!Touches(address)) {
    start_ = address;
    bytes_.clear();
  }
  const Address needed = address + static_cast<Address>(count);
  if (needed > end()) {
    const Address wished = std::min(address + static_cast<Address>(ahead), kAddressSpace);
    const auto more = Read(end(), std::max(needed, wished));
    bytes_.insert(bytes_.end(), more.begin(), more.end());
  }
  return std::span(bytes_).subspan(address - start_, static_cast<std::size_t>(count));
}

std::span<const std::uint8_t> CodeBytes::Before(Address address, int count, int ahead) {
  if (!Touches(address)) {
    start_ = address;
    bytes_.clear();
  }
  const Address needed = address - static_cast<Address>(count);
  if (needed < start_) {
    const Address wished = address - std::min(address, static_cast<Address>(ahead));
    const Address from = std::min(needed, wished);
    const auto more = Read(from, start_);
    bytes_.insert(bytes_.begin(), more.begin(), more.end());
    start_ = from;
  }
  return std::span(bytes_).subspan(needed - start_, static_cast<std::size_t>(count));
}

bool CodeBytes::Touches(Address address) const {
  return start_ <= address && address <= end();
}

std::vector<std::uint8_t> CodeBytes::Read(Address from, Address to) {
  std::vector<std::uint8_t> read(to - from);
  memory_.ReadBytes(read, from);
  return read;
}

}  // namespace brevant::memory
