// SPDX-License-Identifier: MIT
// What an erase or a block costs in parameters, worked out before the target is touched.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "base/address.h"
#include "devices/device.h"
#include "flash/flash_routines.h"

namespace brevant::flash {

struct ErasePlan {
  base::Address first_page = 0;
  int pages = 0;  // 1 to 256
  // For kEraseParameters: the address the routine writes to in the first page, which is the page's
  // last byte, and the number of pages, where 0 means 256.
  std::array<std::uint8_t, 3> parameters{};
};
// For a range whose end lies above its start, both 16 bits. A range of more than 256 pages wraps
// around modulo 256, and an end that is the first byte of a page does not get that page erased: the
// routine's page counter has eight bits, and these are the rules its users know.
ErasePlan PlanErase(const devices::FlashGeometry& flash, base::Address start, base::Address end);
// The page that holds the address is among those erased.
bool Erases(const ErasePlan& plan, const devices::FlashGeometry& flash, base::Address address);

// For kBlockParameters: where to program and where to verify, then as below.
std::array<std::uint8_t, 8> BlockParameters(base::Address address, std::size_t count);
// For kBlockCounts, when the block continues where the one before it ended: the routine has left
// its pointers there.
std::array<std::uint8_t, 4> ContinuedParameters(std::size_t count);

// The bytes in portions of kBlockSize.
std::vector<base::Bytes> SplitIntoBlocks(base::Bytes bytes);

}  // namespace brevant::flash
