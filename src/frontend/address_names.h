// SPDX-License-Identifier: MIT
// Addresses as users name them and as they are told. Rests on the debug information and on the
// device's registers.
#pragma once

#include <string>
#include <string_view>

#include "base/address.h"
#include "devices/device.h"
#include "frontend/typed_numbers.h"
#include "symbols/debug_info.h"

namespace brevant::frontend {

// A place of the program (see symbols/places.h), else a register of the device ("PTA").
Parsed<base::Address> ResolveAddress(std::string_view word, const symbols::DebugInfo& info,
                                     const devices::Device& device);
// Hexadecimal with the name of the symbol at it, if any: "8036 _main".
std::string Described(base::Address address, const symbols::DebugInfo& info);

}  // namespace brevant::frontend
