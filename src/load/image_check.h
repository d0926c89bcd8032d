// SPDX-License-Identifier: MIT
// What of an image will not work on a device, each with its remedy: a short look at the file before
// anybody wonders why its program does not run. Pure but for CheckDebugFile; rests on the memory
// map of the device and the instruction table.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/address.h"
#include "devices/device.h"
#include "images/image.h"
#include "symbols/debug_info.h"

namespace brevant::load {

struct Finding {
  enum class Kind {
    OutsideMemory,
    StackOutsideRam,
    NoResetVector,
    VectorAtNothing,
    WatchdogUnserved,
    SecurityCodeChanges,
    DebugFileOld,
    NoRamStart,  // found by the loader, which knows the symbols
  };
  Kind kind;
  std::string text;  // what was found, and what to do

  // For programs: "stack".
  std::string_view word() const;
  // The program cannot run as it is; the others are good to know.
  bool prevents() const;
};

// What an image that goes to flash makes of the bytes that the monitor compares.
using SecurityBytes = std::array<std::uint8_t, 8>;

// Nothing when the image has none of them; those that it has not are as in erased flash.
std::optional<SecurityBytes> SecurityCodeIn(const images::Image& image);

// in_flash is the security code that stands in flash now, where it is known. What only matters in
// flash is not looked for in an image for RAM.
std::vector<Finding> CheckImage(const images::Image& image, const devices::Device& device,
                                const std::optional<SecurityBytes>& in_flash);
// The debug file beside the image, by its time.
std::optional<Finding> CheckDebugFile(const std::string& image_path, symbols::ToolChain tool_chain);
// Some of the image lies in flash, interrupt vectors aside.
bool IsForFlash(const images::Image& image, const devices::Device& device);
// The address in the image's reset vector.
std::optional<base::Address> ResetVector(const images::Image& image);

}  // namespace brevant::load
