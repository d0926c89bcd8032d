// SPDX-License-Identifier: MIT
// One instruction, whose bytes the caller has fetched, to one line of text. Never touches a target.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "base/address.h"
#include "isa/symbol_names.h"

namespace brevant::isa {

// Filled by the caller with as many bytes as it has fetched; the disassembler sets the length.
struct CurrentInstruction {
  base::Address address = 0;
  std::array<std::uint32_t, 6> bytes{};
  std::uint32_t length = 0;
};

// The line, e.g. "00f000 a6 12 \tLDA\t#12". Operand values with a symbol show its name. Bytes past
// the decoded length never reach the text. An illegal opcode gives "... \tIlligal command",
// length 1.
std::string Disassemble(CurrentInstruction& instruction, const SymbolNames& symbols);

}  // namespace brevant::isa
