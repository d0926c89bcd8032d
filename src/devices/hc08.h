// SPDX-License-Identifier: MIT
// What all devices of the family have at the same place. Registers and vectors are the data
// sheets'; the rest is what a host relies on in the monitor ROM.
#pragma once

#include <cstdint>

#include "base/address.h"

namespace brevant::devices {

inline constexpr std::uint8_t kBlank = 0xFF;  // of erased flash

inline constexpr base::Address kConfig1 = 0x001F;
inline constexpr std::uint8_t kCopDisable = 0x01;  // COPD

// SRSR: why the MCU was reset last; cleared by reading.
inline constexpr base::Address kResetStatus = 0xFE01;

// Break module: the address it compares with, high byte first, then its status and control.
inline constexpr base::Address kBRKH = 0xFE09;
inline constexpr base::Address kBRKL = 0xFE0A;
inline constexpr base::Address kBRKSCR = 0xFE0B;
inline constexpr std::uint8_t kBreakEnable = 0x80;   // BRKE
inline constexpr std::uint8_t kBreakMatched = 0x40;  // BRKA

// Vectors, high byte first. The monitor takes reset and SWI (and with it the break module) from
// vectors of its own, so these two do not matter while it is there.
inline constexpr base::Address kIrqVector = 0xFFFA;
inline constexpr base::Address kSwiVector = 0xFFFC;
inline constexpr base::Address kResetVector = 0xFFFE;

// The monitor compares the code that the host sends with the eight bytes from here on.
inline constexpr base::Address kSecurityCode = 0xFFF6;
// Its verdict, in a RAM byte that the host can read in either case: the bit is set once the code
// has been accepted.
inline constexpr base::Address kSecurityStatus = 0x0080;
inline constexpr std::uint8_t kSecurityPassed = 0x40;

// A routine in the monitor ROM: waits while IRQ is low, then SWI and RTI. An IRQ vector that points
// at it lets a break signal on the serial line, which holds IRQ low, stop a program.
inline constexpr base::Address kIrqStopRoutine = 0xFE27;

}  // namespace brevant::devices
