// SPDX-License-Identifier: MIT
#include "control/target_crc.h"

#include <algorithm>
#include <array>

#include "devices/device.h"

namespace brevant::control {
namespace {

using base::Address;

// The operands are direct addresses of the seven bytes at the end, which the first six are put into
// for each stretch. The CRC comes back in A (high) and X (low), and H still holds the high byte of
// the end.
constexpr std::array<std::uint8_t, 58> kRoutine{
    0x55, 0,           //        LDHX first
    0xF6,              // again  LDA  ,X
    0xB8, 0,           //        EOR  h
    0xB7, 0,           //        STA  t
    0x62,              //        NSA
    0xA4, 0x0F,        //        AND  #$0F
    0xB8, 0,           //        EOR  t
    0xB7, 0,           //        STA  t      x = byte ^ h, x ^= x >> 4
    0x62,              //        NSA
    0xA4, 0xF0,        //        AND  #$F0
    0xB8, 0,           //        EOR  l
    0xB7, 0,           //        STA  h      l ^ x << 4
    0xB6, 0,           //        LDA  t
    0x44, 0x44, 0x44,  //        LSRA (3)
    0xB8, 0,           //        EOR  h
    0xB7, 0,           //        STA  h      ^ x >> 3
    0xB6, 0,           //        LDA  t
    0x62,              //        NSA
    0xA4, 0xF0,        //        AND  #$F0
    0x48,              //        LSLA
    0xB8, 0,           //        EOR  t
    0xB7, 0,           //        STA  l      x << 5 ^ x
    0xAF, 0x01,        //        AIX  #1
    0x75, 0,           //        CPHX end
    0x26, 0xD4,        //        BNE  again
    0xBE, 0,           //        LDX  l
    0xB6, 0,           //        LDA  h
    0x83,              //        SWI
};
constexpr std::size_t kSwi = 50, kFirst = 51, kEnd = 53, kH = 55, kL = 56, kT = 57;
// Which byte each of the operands means.
struct Operand {
  std::size_t at, variable;
};
constexpr Operand kOperands[] = {{1, kFirst}, {4, kH},    {6, kT},  {11, kT}, {13, kT}, {18, kL},
                                 {20, kH},    {22, kT},   {27, kH}, {29, kH}, {31, kT}, {37, kT},
                                 {39, kL},    {43, kEnd}, {47, kL}, {49, kH}};
constexpr double kBytesPerPoll = 4000;  // 65 cycles a byte, 2.4576 MHz, 0.11 s
constexpr int kSparePolls = 10;         // a bus of half that speed, and more

}  // namespace

bool TargetCrc::IsFlash(Address first, std::size_t count) const {
  const auto size = static_cast<Address>(count);
  return count > 0 && !devices::FirstOutsideFlash(memory_.device(), first, size);
}

std::optional<std::uint16_t> TargetCrc::Of(Address first, std::size_t count) {
  if (!IsFlash(first, count) || !Begin()) return std::nullopt;
  const auto crc = Next(first, count);
  return End() ? crc : std::nullopt;
}

bool TargetCrc::Begin() {
  const auto place = routine_.FindPlace(kRoutine.size());
  if (!place) return false;
  place_ = *place;
  written_ = false;
  return routine_.Begin(place_, kRoutine.size());
}

std::optional<std::uint16_t> TargetCrc::Next(Address first, std::size_t count) {
  if (!IsFlash(first, count)) return std::nullopt;
  const Address end = base::Low16(first + static_cast<Address>(count));
  const std::array<std::uint8_t, kT - kFirst> stretch{base::HighByte(first),
                                                      base::LowByte(first),
                                                      base::HighByte(end),
                                                      base::LowByte(end),
                                                      0xFF,
                                                      0xFF};
  const int polls = kSparePolls + static_cast<int>(2 * static_cast<double>(count) / kBytesPerPoll);
  const bool ran =
      written_ ? routine_.RunAgain(kFirst, stretch, kSwi, polls) : RunFirst(stretch, polls);
  if (!ran || base::HighByte(frame_.HX) != base::HighByte(end)) return std::nullopt;
  return static_cast<std::uint16_t>(base::Word(base::LowByte(frame_.A), base::LowByte(frame_.HX)));
}

bool TargetCrc::RunFirst(base::Bytes stretch, int polls) {
  auto routine = kRoutine;
  for (const auto& [at, variable] : kOperands) {
    routine[at] = base::LowByte(place_ + static_cast<Address>(variable));
  }
  std::ranges::copy(stretch, routine.begin() + kFirst);
  written_ = true;
  return routine_.Run(routine, kSwi, polls);
}

}  // namespace brevant::control
