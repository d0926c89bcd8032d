// SPDX-License-Identifier: MIT
// The simulated devices, as rows.
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

struct Device {
  std::string_view name;  // "MC68HC908GP32"
  Range ram;
  std::span<const Range> flash;
  Range monitor_rom;
  base::Address flbpr;      // block protect register, itself a flash byte
  int page_size;            // erase page
  int row_size;             // program row
  bool second_timer;        // TIM2
  bool sci;
  std::span<const base::Address> security_flags;  // bytes whose bit 6 says that the code was accepted
};

const Device& Gp32();
const Device& Ql();
// 0 MC68HC908GP32, 1 MC68HC908QL: the order of setting "HC08Devices".
const Device& DeviceByIndex(int index);

}  // namespace brevant::simulator
