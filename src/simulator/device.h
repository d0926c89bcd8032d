// SPDX-License-Identifier: MIT
// The simulated devices, as rows: memory maps, flash geometry and what stands in the I/O page.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "base/address.h"

namespace brevant::simulator {

struct Range {
  base::Address first = 0;
  base::Address last = 0;  // inclusive
  constexpr bool Contains(base::Address a) const { return a >= first && a <= last; }
};

// A register that only keeps what is written to it, where that is not all: its value after reset
// and the bits that always read 1 (the parts behind it are always ready).
struct PlainRegister {
  base::Address address = 0;
  std::uint8_t reset = 0;
  std::uint8_t always_set = 0;
};

struct Device {
  std::string_view name;  // "MC68HC908GP32"
  Range io;               // registers of the I/O page
  Range high_registers;   // SBSR and its neighbours
  Range ram;
  std::span<const Range> flash;
  Range monitor_rom;
  Range auxiliary_rom;         // first > last: none
  base::Address flbpr;         // block protect register, itself a flash byte
  base::Address protect_base;  // protection starts at protect_base | FLBPR << protect_shift
  int protect_shift;
  int page_size;      // erase page
  int row_size;       // program row
  bool second_timer;  // TIM2
  bool sci;
  int ports;                 // port A and so on
  std::uint8_t port_a_pins;  // what the board straps the inputs of port A to
  std::span<const PlainRegister> plain_registers;
  std::span<const base::Address> security_flags;  // bit 6 set: the code was accepted

  constexpr bool IsFlash(base::Address a) const {
    for (const Range& range : flash) {
      if (range.Contains(a)) return true;
    }
    return false;
  }
};

const Device& Gp32();
const Device& Ql();
// 0 MC68HC908GP32, 1 MC68HC908QL: the order of setting "HC08Devices". Any other value is the GP32.
const Device& DeviceByIndex(int index);

}  // namespace brevant::simulator
