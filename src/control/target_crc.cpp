// SPDX-License-Identifier: MIT
#include "control/target_crc.h"

#include <array>

#include "devices/device.h"

namespace brevant::control {
namespace {

using base::Address;

// "h", "l" and "t" are direct addresses of the three bytes at the end, "first" and "end" operands.
// The CRC comes back in A (high) and X (low), and H still holds the high byte of the end.
constexpr std::array<std::uint8_t, 56> kRoutine{
    0x45, 0,    0,     //        LDHX #first
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
    0x65, 0,    0,     //        CPHX #end
    0x26, 0xD3,        //        BNE  again
    0xBE, 0,           //        LDX  l
    0xB6, 0,           //        LDA  h
    0x83,              //        SWI
    0xFF, 0xFF, 0,     // h, l, t
};
constexpr std::size_t kSwi = 52, kH = 53, kL = 54, kT = 55;
constexpr std::size_t kFirst = 1, kEnd = 44;
// Offsets of the operands that are direct addresses.
constexpr std::size_t kUsesH[] = {5, 21, 28, 30, 51}, kUsesL[] = {19, 40, 49},
                      kUsesT[] = {7, 12, 14, 23, 32, 38};
constexpr double kBytesPerPoll = 4000;  // 64 cycles a byte, 2.4576 MHz, 0.11 s
constexpr int kSparePolls = 10;         // a bus of half that speed, and more

}  // namespace

std::optional<std::uint16_t> TargetCrc::Of(Address first, std::size_t count) {
  const auto size = static_cast<Address>(count);
  if (count == 0 || devices::FirstOutsideFlash(memory_.device(), first, size)) return std::nullopt;
  const auto place = routine_.FindPlace(kRoutine.size());
  if (!place) return std::nullopt;

  auto routine = kRoutine;
  const auto put = [&](std::size_t at, Address value) {
    routine[at] = base::HighByte(value);
    routine[at + 1] = base::LowByte(value);
  };
  const Address end = base::Low16(first + size);
  put(kFirst, first);
  put(kEnd, end);
  const auto point = [&](std::span<const std::size_t> uses, std::size_t variable) {
    for (const std::size_t at : uses) {
      routine[at] = base::LowByte(*place + static_cast<Address>(variable));
    }
  };
  point(kUsesH, kH);
  point(kUsesL, kL);
  point(kUsesT, kT);

  if (!routine_.Begin(*place, routine.size())) return std::nullopt;
  const int polls = kSparePolls + static_cast<int>(2 * static_cast<double>(count) / kBytesPerPoll);
  const bool ran = routine_.Run(routine, kSwi, polls);
  const std::uint32_t a = frame_.A, hx = frame_.HX;
  if (!routine_.End() || !ran || base::HighByte(hx) != base::HighByte(end)) return std::nullopt;
  return static_cast<std::uint16_t>(base::Word(base::LowByte(a), base::LowByte(hx)));
}

}  // namespace brevant::control
