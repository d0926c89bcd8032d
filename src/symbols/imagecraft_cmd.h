// SPDX-License-Identifier: MIT
// The Imagecraft C compiler's debug commands, one a line: "FILE name" (the next source file), "DEF
// name address" (a symbol), "LINE number address" (a line of the last file), "REG PC value" (the
// reset vector's new content). Numbers are hexadecimal, line numbers decimal.
#pragma once

#include <string_view>

#include "symbols/parsed_program.h"

namespace brevant::symbols {

ParsedProgram ParseImagecraftCmd(std::string_view commands);

}  // namespace brevant::symbols
