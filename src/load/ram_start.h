// SPDX-License-Identifier: MIT
// Where a program that was loaded into RAM starts when its file does not say so: Go is to run what
// has just been loaded and not what stands in flash. Pure.
#pragma once

#include <optional>
#include <string>

#include "base/address.h"
#include "devices/device.h"
#include "images/image.h"
#include "symbols/symbol_table.h"

namespace brevant::load {

struct RamStart {
  base::Address address = 0;
  std::string by;  // "_main", or what else says so
  bool operator==(const RamStart&) const = default;
};

// No code in flash, some in RAM.
bool IsForRam(const images::Image& image, const devices::Device& device);
// The image's own reset vector, else the lowest symbol that names a start and lies in the image.
std::optional<RamStart> FindRamStart(const images::Image& image, const devices::Device& device,
                                     const symbols::SymbolTable& symbols);

}  // namespace brevant::load
