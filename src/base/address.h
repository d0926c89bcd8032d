// SPDX-License-Identifier: MIT
// Addresses and the 16-bit arithmetic of the target. Everything in the system rests on this file.
#pragma once

#include <cstdint>
#include <span>

namespace brevant::base {

// A target address. The HC08 has 16 address bits; the type is wider so that "one past the end" and
// over-long input can be told from a wrapped address. Cut with Low16 where the wire or the CPU
// would.
using Address = std::uint32_t;

using Bytes = std::span<const std::uint8_t>;

// One past the last address, and the last.
inline constexpr Address kAddressSpace = 0x10000;
inline constexpr Address kLastAddress = kAddressSpace - 1;

constexpr Address Low16(std::uint32_t value) {
  return value & 0xFFFFu;
}
constexpr std::uint8_t HighByte(std::uint32_t value) {
  return static_cast<std::uint8_t>((value >> 8) & 0xFFu);
}
constexpr std::uint8_t LowByte(std::uint32_t value) {
  return static_cast<std::uint8_t>(value & 0xFFu);
}
// Big-endian, as the HC08 keeps its words in memory and the monitor sends them.
constexpr std::uint32_t Word(std::uint8_t high, std::uint8_t low) {
  return high * 256u + low;
}

}  // namespace brevant::base
