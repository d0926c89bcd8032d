// SPDX-License-Identifier: MIT
// One instruction to one line of text. Never touches a target.
#pragma once

#include <string>

#include "isa/instruction.h"
#include "isa/symbol_names.h"

namespace brevant::isa {

// The line, e.g. "00f000 a6 12 \tLDA\t#12". Operand values with a symbol show its name. Bytes
// behind the instruction never reach the text. An illegal opcode gives "... \tIlligal command".
std::string Disassemble(const Instruction& instruction, const SymbolNames& symbols);

}  // namespace brevant::isa
