// SPDX-License-Identifier: MIT
// CRC-16 with polynomial $1021 from $FFFF on, high bit first.
#pragma once

#include <cstdint>

#include "base/address.h"

namespace brevant::base {

// The step that the target's own routine takes, too, for each byte.
constexpr std::uint16_t Crc16(Bytes bytes) {
  std::uint16_t crc = 0xFFFF;
  for (const std::uint8_t byte : bytes) {
    auto x = static_cast<std::uint8_t>((crc >> 8) ^ byte);
    x = static_cast<std::uint8_t>(x ^ (x >> 4));
    crc = static_cast<std::uint16_t>((crc << 8) ^ (x << 12) ^ (x << 5) ^ x);
  }
  return crc;
}

}  // namespace brevant::base
