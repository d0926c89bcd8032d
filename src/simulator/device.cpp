// SPDX-License-Identifier: MIT
#include "simulator/device.h"

#include <array>

namespace brevant::simulator {
namespace {

// The first RAM byte belongs to the monitor of each part; hosts look at $0080 on both.
constexpr std::array<base::Address, 2> kGp32SecurityFlags{0x0080, 0x0040};
constexpr std::array<base::Address, 1> kQlSecurityFlags{0x0080};

constexpr std::array kGp32Flash{Range{0x8000, 0xFDFF}, Range{0xFF7E, 0xFF7E},
                                Range{0xFFDC, 0xFFFF}};
// $FFBF, between FLBPR and the oscillator trim byte, is reserved.
constexpr std::array kQlFlash{Range{0xEE00, 0xFDFF}, Range{0xFFB0, 0xFFBE}, Range{0xFFC0, 0xFFFF}};

constexpr std::array kGp32Registers{
    PlainRegister{0x0010, 0x28},        // SPCR
    PlainRegister{0x0011, 0x08},        // SPSCR: transmitter empty
    PlainRegister{0x0036, 0x20},        // PCTL: PLL on
    PlainRegister{0x0037, 0x00, 0x40},  // PBWC: always in lock
    PlainRegister{0x0039, 0x40},        // PMSL
    PlainRegister{0x003A, 0x40},        // PMRS
    PlainRegister{0x003B, 0x01},        // PMDS
    PlainRegister{0x003C, 0x1F, 0x80},  // ADSCR: no channel; conversions are complete at once
};
constexpr std::array kQlRegisters{
    PlainRegister{0x0038, 0x80},        // OSCTRIM
    PlainRegister{0x003C, 0x1F, 0x80},  // ADSCR: no channel; conversions are complete at once
};

constexpr Device kGp32{
    .name = "MC68HC908GP32",
    .io = {0x0000, 0x003F},
    .high_registers = {0xFE00, 0xFE0C},
    .ram = {0x0040, 0x023F},
    .flash = kGp32Flash,
    .monitor_rom = {0xFE20, 0xFF52},
    .auxiliary_rom = {1, 0},
    .flbpr = 0xFF7E,
    .protect_base = 0x8000,
    .protect_shift = 7,
    .page_size = 128,
    .row_size = 64,
    .second_timer = true,
    .sci = true,
    .ports = 5,
    .port_a_pins = 0xFF,
    .plain_registers = kGp32Registers,
    .security_flags = kGp32SecurityFlags,
};

constexpr Device kQl{
    .name = "MC68HC908QL",
    .io = {0x0000, 0x004F},  // with the SLIC registers from $0040 on
    .high_registers = {0xFE00, 0xFE0F},
    .ram = {0x0080, 0x00FF},
    .flash = kQlFlash,
    .monitor_rom = {0xFE20, 0xFF7D},
    .auxiliary_rom = {0x2800, 0x2DFF},
    .flbpr = 0xFFBE,
    .protect_base = 0xC000,
    .protect_shift = 6,
    .page_size = 64,
    .row_size = 32,
    .second_timer = false,
    .sci = false,
    .ports = 2,
    .port_a_pins = 0xFB,  // PTA2 is the IRQ pin, which reads 0
    .plain_registers = kQlRegisters,
    .security_flags = kQlSecurityFlags,
};

}  // namespace

const Device& Gp32() {
  return kGp32;
}
const Device& Ql() {
  return kQl;
}
const Device& DeviceByIndex(int index) {
  return index == 1 ? kQl : kGp32;
}

}  // namespace brevant::simulator
