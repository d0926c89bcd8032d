// SPDX-License-Identifier: MIT
// The Free assembler's listing. Its second line begins with "as12"; from line 6 on, columns 0 to 3
// hold the address, the bytes start at column 5 and the source text at column 24.
#pragma once

#include <string_view>

#include "symbols/parsed_program.h"

namespace brevant::symbols {

ParsedProgram ParseFreeAssemblerListing(std::string_view listing);

}  // namespace brevant::symbols
