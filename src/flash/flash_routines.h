// SPDX-License-Identifier: MIT
// The three HC08 routines that erase and program flash from target RAM, patched for a device, and
// the RAM they use. Each sets SP to $00FF, drives the flash control register and ends with SWI.
// They count loops and do not adapt to the bus clock. At 2.4576 MHz a programming pulse lasts about
// 49 us (121 cycles from one write to the next), which is longer than the data sheet's 40.
#pragma once

#include <cstdint>
#include <vector>

#include "base/address.h"
#include "devices/device.h"

namespace brevant::flash {

// Target RAM.
inline constexpr base::Address kRoutine = 0x0080;
inline constexpr base::Address kEraseParameters = 0x00CA;  // first page, number of pages
inline constexpr base::Address kBlockParameters = 0x00D6;  // two pointers, then as below
inline constexpr base::Address kBlockCounts = 0x00DA;      // to program, to verify, source pointer
inline constexpr base::Address kVerifyCount = 0x00DB;      // not 0: a byte did not read back
inline constexpr base::Address kBlockData = 0x00E0;        // at most kBlockSize bytes
inline constexpr base::Address kRoutineStack = 0x00FF;

inline constexpr std::size_t kBlockSize = 16;

std::vector<std::uint8_t> MassEraseRoutine(const devices::FlashGeometry& flash);
std::vector<std::uint8_t> ProgrammingRoutine(const devices::FlashGeometry& flash);
std::vector<std::uint8_t> EraseRangeRoutine(const devices::FlashGeometry& flash);

}  // namespace brevant::flash
