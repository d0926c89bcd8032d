// SPDX-License-Identifier: MIT
// Symbols from any text file that lists them, typically an assembler listing: after the first line
// that contains the starting string, each line of the form name, white space, up to five
// hexadecimal digits is a symbol and every other line is passed over.
#pragma once

#include <string>
#include <string_view>

#include "symbols/debug_info.h"

namespace brevant::symbols {

// Replaces the symbols, discards the source lines and clears DebugInfoLoaded, which says whether
// they belong to the loaded program. True when at least one symbol was read; the tables are empty
// otherwise. An empty starting string is contained in the first line.
bool LoadSymbolFile(const std::string& path, std::string_view starting_string, DebugInfo& info);

// The same on a text.
std::vector<Symbol> ParseSymbolFile(std::string_view text, std::string_view starting_string);

}  // namespace brevant::symbols
