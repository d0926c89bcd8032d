// SPDX-License-Identifier: MIT
// The devices that can be debugged: one row each, with its names, its memory map, its registers and
// what erasing and programming have to know of its flash.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "base/address.h"
#include "devices/registers.h"

namespace brevant::devices {

enum class MemoryKind {
  Nothing,  // unimplemented or reserved
  Registers,
  Ram,
  Flash,
  Rom,  // of the monitor, and routines beside it
};

struct MemoryRange {
  base::Address first = 0;
  base::Address last = 0;  // inclusive
  MemoryKind kind = MemoryKind::Nothing;
};

struct FlashGeometry {
  int page_shift = 0;          // log2 of what one erase clears
  base::Address row_size = 0;  // bytes programmed under one high voltage
  base::Address flbpr = 0;     // block protect register, itself a byte of flash
  base::Address trim = 0;      // of the oscillator, set by the factory in flash; 0: none

  constexpr base::Address page_size() const { return base::Address{1} << page_shift; }
  constexpr base::Address page_mask() const { return page_size() - 1; }
  // AIX takes a signed byte: two such steps lead to the next page.
  constexpr std::uint8_t aix_step() const { return base::LowByte(page_size() / 2); }
};

struct Vector {
  base::Address address = 0;  // of the high byte
  std::string_view name;
};

struct Device {
  int settings_number = 0;              // value of setting "HC08Devices"
  std::string_view name;                // "MC68HC908GP32"
  std::string_view option;              // "gp32"
  std::span<const MemoryRange> memory;  // ascending; nothing between the ranges
  FlashGeometry flash;
  std::span<const Vector> vectors;                     // ascending
  std::span<const Register> (*registers)() = nullptr;  // ascending
};

// The row at index n has settings number n.
std::span<const Device> All();
// A number that names no device means the first.
const Device& BySettingsNumber(int number);
// Null when there is no such option.
const Device* ByOption(std::string_view option);

// Nothing above $FFFF.
MemoryKind KindOf(const Device& device, base::Address address);
// What of the addresses, both inclusive, is flash; ascending.
std::vector<MemoryRange> FlashWithin(const Device& device, base::Address first, base::Address last);
// The first of so many addresses that is not flash. Those above $FFFF are not.
std::optional<base::Address> FirstOutsideFlash(const Device& device, base::Address first,
                                               base::Address count);

}  // namespace brevant::devices
