// SPDX-License-Identifier: MIT
// The program that start-up leaves in target RAM: a harmless loop for the first steps on a board
// whose flash holds nothing.
#pragma once

#include <array>
#include <cstdint>

#include "base/address.h"

namespace brevant::debugger {

inline constexpr base::Address kStartUpProgramAddress = 0x0100;

inline constexpr std::array<std::uint8_t, 37> kStartUpProgram{
    0x45, 0x02, 0x3F,  // 0100        LDHX #$023F
    0x94,              // 0103        TXS
    0xA6, 0x03,        // 0104        LDA  #$03
    0xB7, 0x1E,        // 0106        STA  $1E       CONFIG2
    0xA6, 0x01,        // 0108        LDA  #$01
    0xB7, 0x1F,        // 010A        STA  $1F       CONFIG1: COP off
    0x8C,              // 010C        CLRH
    0x9A,              // 010D        CLI
    0xCD, 0x01, 0x13,  // 010E loop   JSR  count
    0x20, 0xFB,        // 0111        BRA  loop
    0x5F,              // 0113 count  CLRX
    0xBF, 0x40,        // 0114        STX  $40
    0x3C, 0x40,        // 0116 next   INC  $40
    0xBE, 0x40,        // 0118        LDX  $40
    0xA6, 0x02,        // 011A        LDA  #$02
    0xB1, 0x40,        // 011C        CMP  $40
    0x26, 0xF6,        // 011E        BNE  next
    0x81,              // 0120        RTS
    0x2E, 0xFE,        // 0121 irq    BIL  irq       wait for the line to be released
    0x83,              // 0123        SWI
    0x80,              // 0124        RTI
};

}  // namespace brevant::debugger
