// SPDX-License-Identifier: MIT
// One line of text to one instruction, and the text that the editor of an instruction opens with.
// Rests on the instruction table; never touches a target.
//
// The line is one mnemonic and up to three operands, in either case, parted by commas or blanks,
// with an optional comment behind ";":
//   LDA #12   LDHX #1234   LDA 80   LDA 1234   LDA ,X   LDA 12,X   LDA 1234,X   LDA 3,SP   NEG 3,SP
//   BRA loop   BSET 3,80   BRSET 3,80,loop   CBEQ 80,loop   CBEQA #5,loop   CBEQ X+,loop
//   CBEQ 12,X+,loop   CBEQ 4,SP,loop   DBNZ 80,loop   DBNZA loop   DBNZ X,loop   DBNZ 12,X,loop
//   MOV 80,81   MOV #5,80   MOV 80,X+   MOV X+,80
// Numbers are hexadecimal. Where an operand has a short and a long form, its value decides: below
// 100 it is the short one, however many digits were written.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "base/address.h"
#include "isa/instruction.h"
#include "isa/symbol_names.h"

namespace brevant::isa {

// The instruction for this address; branch targets are absolute in the text and must be in reach.
// Nothing when any rule fails: unknown mnemonic or symbol, no such operand form, a value too large;
// why, where it is asked for, is then a sentence for the user.
std::optional<Instruction> AssembleLine(std::string_view text, base::Address address,
                                        const SymbolNames& symbols, std::string* why = nullptr);

// "#12", "$12", "#$12" and "12" are 0x12; no digits at all are 0. What is not hexadecimal is the
// name of a symbol, so a symbol named BEEF is out of reach. Digits beyond 32 bits are lost in
// front.
std::optional<std::uint32_t> ParseOperandValue(std::string_view word, const SymbolNames& symbols);

// The instruction text of a disassembled line as the editor offers it: without address, bytes and
// label, each tab as two spaces. Empty when the line holds none.
std::string EditableText(std::string_view line);

}  // namespace brevant::isa
