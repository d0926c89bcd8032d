// SPDX-License-Identifier: MIT
// The Imagecraft C compiler's map file and the list of its source files. The map's second line
// begins with "Area"; in each area columns 7 to 10 hold an address and the text from column 13 on
// is a symbol, or "file.line" for a source line.
#pragma once

#include <string_view>

#include "symbols/parsed_program.h"

namespace brevant::symbols {

ParsedProgram ParseImagecraftMap(std::string_view map, std::string_view source_list);

}  // namespace brevant::symbols
