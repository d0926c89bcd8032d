// SPDX-License-Identifier: MIT
// What came of a flash command in words, for all who tell it.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "base/user_interface.h"
#include "devices/device.h"
#include "flash/blank_check.h"
#include "flash/flash_job.h"
#include "flash/flash_plan.h"
#include "memory/memory.h"

namespace brevant::flash {

struct FlashImageResult;

// While it is being programmed.
std::string BlockText(const FlashBlock& block);

// Of pages that were found blank: "erased 8000 to fdff, all blank".
std::string ErasedText(std::span<const devices::MemoryRange> erased);
// Of a report that is not blank: which pages.
base::Message NotErasedMessage(const devices::FlashGeometry& flash, const BlankReport& report);

// "programmed 16 bytes, 216 more stood there already".
std::string ProgrammedText(const FlashStatus& status);
// A line each: what was spared, erased, kept and programmed.
std::vector<std::string> FlashImageText(const FlashImageResult& result);

// What was found where flash should hold an image.
struct WrongBytes {
  long different = 0;
  long compared = 0;
  memory::Difference first{};
  bool was_blank = false;  // known to have been before it was programmed
};
// "3 of 16 bytes differ, the first at 9018: expected a5, found 00: ...": what its bits say of the
// cause. Asks the block protect register.
std::string DifferenceText(memory::Memory& memory, const WrongBytes& wrong);

}  // namespace brevant::flash
