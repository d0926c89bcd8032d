// SPDX-License-Identifier: MIT
// The CPU08's arithmetic and its flags, one function an operation. The condition codes are kept
// spread out, N and Z as the value they were last taken from, and packed only when software looks.
#pragma once

#include <cstdint>

#include "simulator/always_inline.h"

namespace brevant::simulator {

namespace ccr {
inline constexpr std::uint8_t kV = 0x80, kH = 0x10, kI = 0x08, kN = 0x04, kZ = 0x02, kC = 0x01;
inline constexpr std::uint8_t kAlwaysSet = 0x60;
}  // namespace ccr

struct Flags {
  std::uint8_t carry = 0;     // 0 or 1
  std::uint8_t overflow = 0;  // bit 7
  std::uint8_t half = 0;      // bit 4
  std::uint8_t mask = 0;      // 0 or 1
  std::uint8_t negative = 0;  // bit 7
  std::uint8_t nonzero = 1;   // Z when this is 0

  BREVANT_ALWAYS_INLINE constexpr bool n() const { return (negative & 0x80) != 0; }
  BREVANT_ALWAYS_INLINE constexpr bool v() const { return (overflow & 0x80) != 0; }
  BREVANT_ALWAYS_INLINE constexpr bool z() const { return nonzero == 0; }
  BREVANT_ALWAYS_INLINE constexpr bool c() const { return carry != 0; }

  BREVANT_ALWAYS_INLINE constexpr std::uint8_t Pack() const {
    return static_cast<std::uint8_t>(ccr::kAlwaysSet | (overflow & 0x80) | (half & 0x10) |
                                     mask << 3 | (negative & 0x80) >> 5 | (z() ? ccr::kZ : 0) |
                                     carry);
  }
  BREVANT_ALWAYS_INLINE constexpr void Unpack(std::uint8_t value) {
    carry = value & 1;
    nonzero = (value & ccr::kZ) == 0;
    negative = static_cast<std::uint8_t>(value << 5);
    mask = (value >> 3) & 1;
    half = value & ccr::kH;
    overflow = value & ccr::kV;
  }
  BREVANT_ALWAYS_INLINE constexpr void SetNz(std::uint8_t result) { negative = nonzero = result; }
  constexpr bool operator==(const Flags& other) const { return Pack() == other.Pack(); }
};

namespace alu {

using Byte = std::uint8_t;
using Word = std::uint16_t;

BREVANT_ALWAYS_INLINE constexpr Byte Low(unsigned value) {
  return static_cast<Byte>(value);
}

// Loads, stores and logic: N and Z of the value, V cleared.
BREVANT_ALWAYS_INLINE constexpr Byte Logic(Flags& f, unsigned result) {
  f.SetNz(Low(result));
  f.overflow = 0;
  return Low(result);
}
BREVANT_ALWAYS_INLINE constexpr void Logic16(Flags& f, Word value) {
  f.negative = Low(value >> 8);
  f.nonzero = value != 0;
  f.overflow = 0;
}

BREVANT_ALWAYS_INLINE constexpr Byte Add(Flags& f, Byte a, Byte m, unsigned carry_in) {
  const unsigned sum = a + m + carry_in;
  const Byte r = Low(sum);
  f.half = (a ^ m ^ r) & ccr::kH;
  f.overflow = (a ^ r) & (m ^ r);
  f.carry = Low(sum >> 8);
  f.SetNz(r);
  return r;
}
// H keeps its value.
BREVANT_ALWAYS_INLINE constexpr Byte Subtract(Flags& f, Byte a, Byte m, unsigned borrow_in) {
  const unsigned difference = a - m - borrow_in;
  const Byte r = Low(difference);
  f.overflow = (a ^ m) & (a ^ r);
  f.carry = (difference >> 8) & 1;
  f.SetNz(r);
  return r;
}
BREVANT_ALWAYS_INLINE constexpr void Compare16(Flags& f, Word a, Word m) {
  const unsigned difference = static_cast<unsigned>(a) - m;
  const Word r = static_cast<Word>(difference);
  f.overflow = Low(((a ^ m) & (a ^ r)) >> 8);
  f.carry = (difference >> 16) & 1;
  f.negative = Low(r >> 8);
  f.nonzero = r != 0;
}

BREVANT_ALWAYS_INLINE constexpr Byte Negate(Flags& f, Byte m) {
  return Subtract(f, 0, m, 0);
}
BREVANT_ALWAYS_INLINE constexpr Byte Complement(Flags& f, Byte m) {
  f.carry = 1;
  return Logic(f, ~static_cast<unsigned>(m));
}
// C keeps its value.
BREVANT_ALWAYS_INLINE constexpr Byte Increment(Flags& f, Byte m) {
  const Byte r = Low(m + 1u);
  f.SetNz(r);
  f.overflow = r == 0x80 ? 0x80 : 0;
  return r;
}
BREVANT_ALWAYS_INLINE constexpr Byte Decrement(Flags& f, Byte m) {
  const Byte r = Low(m - 1u);
  f.SetNz(r);
  f.overflow = r == 0x7F ? 0x80 : 0;
  return r;
}

// All shifts: V is N xor C after the operation.
BREVANT_ALWAYS_INLINE constexpr Byte Shifted(Flags& f, unsigned result, unsigned carry_out) {
  f.carry = carry_out & 1;
  f.SetNz(Low(result));
  f.overflow = Low(f.negative ^ (f.carry << 7));
  return Low(result);
}
BREVANT_ALWAYS_INLINE constexpr Byte ShiftLeft(Flags& f, Byte m, unsigned bit_in) {
  return Shifted(f, m << 1 | bit_in, m >> 7);
}
BREVANT_ALWAYS_INLINE constexpr Byte ShiftRight(Flags& f, Byte m, unsigned bit_in) {
  return Shifted(f, m >> 1 | bit_in << 7, m);
}

// BCD correction after ADD or ADC. H and V keep their values; C is only ever set.
BREVANT_ALWAYS_INLINE constexpr Byte DecimalAdjust(Flags& f, Byte a) {
  const unsigned low = a & 0x0F, high = a >> 4;
  unsigned correction = f.half != 0 || low > 9 ? 0x06 : 0;
  if (f.c() || high > 9 || (high == 9 && low > 9)) {
    correction |= 0x60;
    f.carry = 1;
  }
  const Byte r = Low(a + correction);
  f.SetNz(r);
  return r;
}

struct Quotient {
  Byte quotient = 0;
  Byte remainder = 0;
};
// H:A by X. A quotient that does not fit, or a divisor of 0, sets C and leaves the rest alone (the
// registers are indeterminate on silicon).
BREVANT_ALWAYS_INLINE constexpr Quotient Divide(Flags& f, Byte h, Byte a, Byte divisor) {
  const unsigned dividend = h * 256u + a;
  if (divisor == 0 || dividend / divisor > 0xFF) {
    f.carry = 1;
    return {a, h};
  }
  f.carry = 0;
  f.nonzero = Low(dividend / divisor);
  return {Low(dividend / divisor), Low(dividend % divisor)};
}

}  // namespace alu
}  // namespace brevant::simulator
