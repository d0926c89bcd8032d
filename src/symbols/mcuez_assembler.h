// SPDX-License-Identifier: MIT
// The MCUEZ assembler's listing, whose addresses are offsets into sections, and the linker
// parameter file that says where each section lies ("NAME = KIND 0X0080 ..."). In the listing
// columns 0 to 4 hold the line number, 13 to 18 the offset, the bytes start at column 20 and the
// source text at column 32. Before the first SECTION line the offsets are taken as addresses; a
// section that the parameter file does not name has none, and its symbols and lines are left out.
#pragma once

#include <string_view>

#include "symbols/parsed_program.h"

namespace brevant::symbols {

ParsedProgram ParseMcuezListing(std::string_view listing, std::string_view parameters);

}  // namespace brevant::symbols
