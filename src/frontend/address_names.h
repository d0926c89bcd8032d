// SPDX-License-Identifier: MIT
// Addresses as users name them and as they are told. Rests on the debug information.
#pragma once

#include <string>
#include <string_view>

#include "base/address.h"
#include "frontend/typed_numbers.h"
#include "symbols/debug_info.h"

namespace brevant::frontend {

// See symbols/places.h.
Parsed<base::Address> ResolveAddress(std::string_view word, const symbols::DebugInfo& info);
// Hexadecimal with the name of the symbol at it, if any: "8036 _main".
std::string Described(base::Address address, const symbols::DebugInfo& info);

}  // namespace brevant::frontend
