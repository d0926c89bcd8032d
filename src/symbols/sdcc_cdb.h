// SPDX-License-Identifier: MIT
// SDCC's debug file (.cdb): one record a line. S and F records give the types and sizes of a
// module's variables and functions, T records its structures, L records the addresses that the
// linker chose.
//
//   L:G$total$0_0$0:8B          global; F<module>$... static; L<module>.<function>$... local
//   L:XG$main$0$0:812A          address of the function's last instruction
//   L:C$main.c$24$1_0$44:8101   line 24 of main.c (then level and block)
//   L:A$main$463:8127           line 463 of main.asm
//
// What becomes of them:
// - Names have the linker's leading "_"; locals that have an address are "_function.name". A static
//   name that several modules use is there a second time as "_module.name", after all others.
// - Variables keep their types and say where they are: in memory, on the stack, in registers. Those
//   that the compiler invents ("sloc0") are symbols only.
// - Lines come sorted by address. Where a function has lines of C the assembler lines inside it are
//   left out; start-up code and modules in assembler have only those.
// - A line has one record for each block, with its last address. The module's listing has them all:
//   where one of the same build lies beside the image, the lines of C come from there, and from
//   here where the listing has no line.
// - Of a function without a return the closing line has no code, and is left out.
// - The strings of a program ("__str_1") are recorded at their module's end, where the next
// function
//   starts. They get the addresses of their labels in the listing, or are left out.
// - A function without a record at its start gets the first line inside it.
// - Of several lines at one address all are kept, and the second is always the last one.
#pragma once

#include <string_view>

#include "symbols/parsed_program.h"
#include "symbols/sdcc_sources.h"

namespace brevant::symbols {

// map is the linker's map file or empty: it adds the global names that the debug file lacks
// (start-up code, libraries, assembler modules).
ParsedProgram ParseSdccCdb(std::string_view cdb, std::string_view map, SdccSources& sources);

}  // namespace brevant::symbols
