// SPDX-License-Identifier: MIT
// What the tests of the MCU share: a device that is all RAM, and an MCU that sits in its monitor.
#pragma once

#include <string_view>
#include <vector>

#include "base/text_number.h"
#include "simulator/mcu.h"

namespace brevant::simulator {

// For what the CPU does to plain memory.
inline constexpr Device kAllRam{
    .name = "RAM",
    .io = {1, 0},
    .high_registers = {1, 0},
    .ram = {0x0000, 0xFFFF},
    .flash = {},
    .monitor_rom = {1, 0},
    .auxiliary_rom = {1, 0},
    .flbpr = 0xFFFF,
    .protect_base = 0,
    .protect_shift = 0,
    .page_size = 64,
    .row_size = 32,
    .second_timer = false,
    .sci = false,
    .ports = 0,
    .port_a_pins = 0xFF,
    .plain_registers = {},
    .security_flags = {},
};

// "A6 12" or "A612" to bytes.
inline std::vector<std::uint8_t> Bytes(std::string_view hex) {
  std::vector<std::uint8_t> bytes;
  std::string digits;
  for (const char c : hex) {
    if (c != ' ') digits += c;
  }
  for (std::size_t i = 0; i + 1 < digits.size(); i += 2) {
    bytes.push_back(base::LowByte(base::ParseHex(digits.substr(i, 2))));
  }
  return bytes;
}

inline void Load(Mcu& mcu, base::Address address, std::string_view hex) {
  for (const std::uint8_t byte : Bytes(hex)) mcu.Poke(address++, byte);
}

// Powered up, security passed, in the monitor with its frame at $00FA.
inline Mcu ReadyMcu(const Device& device = Gp32()) {
  Mcu mcu(device);
  mcu.SetSecurityPassed(true);
  mcu.EnterMonitor();
  return mcu;
}

// The registers of the interrupted program as the monitor has stacked them.
struct Frame {
  std::uint8_t h, ccr, a, x;
  base::Address pc, sp;
};
inline Frame ReadFrame(const Mcu& mcu) {
  const base::Address s = mcu.cpu().sp + 1u;
  return {mcu.Peek(s),
          mcu.Peek(s + 1),
          mcu.Peek(s + 2),
          mcu.Peek(s + 3),
          base::Word(mcu.Peek(s + 4), mcu.Peek(s + 5)),
          s + 5};
}

// Changes the frame's PC and CCR and leaves the monitor.
inline void ResumeAt(Mcu& mcu, base::Address pc, std::uint8_t ccr = 0x68) {
  const base::Address s = mcu.cpu().sp + 1u;
  mcu.Poke(s + 1, ccr);
  mcu.Poke(s + 4, base::HighByte(pc));
  mcu.Poke(s + 5, base::LowByte(pc));
  mcu.ResumeFromMonitor();
}

// Loads code, resumes there and runs for at most this many cycles.
inline RunEnd RunCode(Mcu& mcu, base::Address address, std::string_view hex,
                      std::uint64_t cycles = 1'000'000, std::uint8_t ccr = 0x68) {
  Load(mcu, address, hex);
  ResumeAt(mcu, address, ccr);
  return mcu.Run(mcu.cycle() + cycles);
}

}  // namespace brevant::simulator
