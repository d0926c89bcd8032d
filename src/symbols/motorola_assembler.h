// SPDX-License-Identifier: MIT
// The Motorola assembler's listing. Its second line begins with "68HC12"; from line 7 on, columns 7
// to 12 hold the address and the source text starts at column 26. An equate has no address: its
// value stands in columns 30 to 33 and 35 to 38.
#pragma once

#include <string_view>

#include "symbols/parsed_program.h"

namespace brevant::symbols {

ParsedProgram ParseMotorolaListing(std::string_view listing);

}  // namespace brevant::symbols
