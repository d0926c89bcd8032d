// SPDX-License-Identifier: MIT
// The global names of SDCC's map file: an address of 8 hexadecimal digits, a name and the module
// that defines it ("C:   00008026  _timer_isr   main"; data has no "C:").
#pragma once

#include <string_view>
#include <vector>

#include "symbols/symbol_table.h"

namespace brevant::symbols {

// The linker cuts names in the map to this length.
inline constexpr std::size_t kSdccMapNameLength = 32;

std::vector<Symbol> ParseSdccMap(std::string_view map);

}  // namespace brevant::symbols
