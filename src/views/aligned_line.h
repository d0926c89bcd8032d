// SPDX-License-Identifier: MIT
// A line of code laid out so that all mnemonics begin in one column: bytes, label, mnemonic and
// operands each have a column of their own, and a label that is too long is cut.
#pragma once

#include <string>
#include <string_view>

namespace brevant::views {

// Of a disassembled line whose instruction has so many bytes; 0 for a line of anything else, which
// only has its tabs expanded.
std::string AlignedText(std::string_view line, int bytes);

}  // namespace brevant::views
