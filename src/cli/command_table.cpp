// SPDX-License-Identifier: MIT
#include "cli/command_table.h"

#include <algorithm>
#include <array>

#include "base/text_format.h"
#include "cli/commands.h"

namespace brevant::cli {
namespace {

constexpr bool kStopped = false;
constexpr bool kAlways = true;

constexpr Command kCommands[] = {
    {"info", "", 0, 0, kAlways, Info, "device, port and security"},
    {"regs", "", 0, 0, kStopped, Regs, "show the registers"},
    {"set", "REG VALUE", 2, 2, kStopped, Set, "change PC, SP, HX, A or CCR"},
    {"read", "ADDR [COUNT]", 1, 2, kStopped, Read, "show memory (COUNT hex, default 10)"},
    {"write", "ADDR BYTE...", 2, -1, kStopped, Write, "write bytes to RAM or registers"},
    {"fill", "FROM TO WORD", 3, 3, kStopped, Fill, "fill a block with a 16-bit word"},
    {"move", "FROM TO DEST", 3, 3, kStopped, Move, "copy a block in 16-bit words"},
    {"disasm", "[ADDR [LINES]]", 0, 2, kStopped, Disasm, "disassemble (default: 10 lines from PC)"},
    {"asm", "ADDR TEXT", 2, -1, kStopped, Asm, "assemble one instruction into memory"},
    {"load", "FILE", 1, 1, kStopped, Load, "load an S19, SX or HEX image into the target"},
    {"toolchain", "[NAME]", 0, 1, kAlways, Toolchain,
     "whose debug information a load reads (stored)"},
    {"symbols", "FILE", 1, 1, kStopped, Symbols, "read a symbol file"},
    {"lookup", "NAME|ADDR", 1, 1, kAlways, Lookup, "a symbol by name or address"},
    {"line", "ADDR", 1, 1, kAlways, Line, "the source line of an address"},
    {"macro", "FILE", 1, 1, kStopped, Macro, "run a macro file"},
    {"verify", "FILE", 1, 1, kStopped, Verify, "compare target memory with an image"},
    {"save", "FROM TO FILE", 3, 3, kStopped, Save, "read memory out to .s19, .hex or .bin"},
    {"break", "[ADDR]", 0, 1, kAlways, Break, "set a breakpoint, or list them"},
    {"delete", "ADDR|all", 1, 1, kStopped, Delete, "delete breakpoints"},
    {"mode", "[hardware|software]", 0, 1, kStopped, Mode, "kind of breakpoints"},
    {"step", "[N]", 0, 1, kStopped, Step, "run N instructions (decimal, default 1)"},
    {"over", "[N]", 0, 1, kStopped, Over, "the same, but calls count as one instruction"},
    {"go", "[ADDR]", 0, 1, kStopped, Go, "run (from ADDR) and wait for the stop"},
    {"until", "ADDR", 1, 1, kStopped, Until, "run to ADDR and wait for the stop"},
    {"run", "[ADDR]", 0, 1, kStopped, Run, "run (from ADDR) without waiting"},
    {"stop", "", 0, 0, kAlways, Stop, "stop the running target with a break signal"},
    {"wait", "", 0, 0, kAlways, Wait, "wait for a stop"},
    {"nstep", "N", 1, 1, kStopped, NStep, "N-step until N steps are exceeded, or a breakpoint"},
    {"trace", "N", 1, 1, kStopped, Trace,
     "run N instructions, show the last 128 and write trace.txt"},
    {"mass-erase", "", 0, 0, kStopped, MassErase, "erase all flash"},
    {"erase", "FROM TO", 2, 2, kStopped, Erase, "erase the flash pages of a range"},
    {"program", "FILE [noverify]", 1, 2, kStopped, Program, "program S-records into erased flash"},
    {"program-bytes", "ADDR BYTE...", 2, -1, kStopped, ProgramBytes, "program a few flash bytes"},
    {"program-irq", "", 0, 0, kStopped, ProgramIrq, "program the IRQ vector that lets stop work"},
    {"reset", "", 0, 0, kAlways, Reset, "reset the target and send its security code"},
    {"help", "[COMMAND]", 0, 1, kAlways, Help, "this list, or one command"},
    {"quit", "", 0, 0, kAlways, Quit, "leave; the target keeps its state"},
};

}  // namespace

std::span<const Command> Commands() {
  return kCommands;
}

const Command* FindCommand(std::string_view name) {
  const auto found = std::find_if(std::begin(kCommands), std::end(kCommands),
                                  [name](const Command& command) { return command.name == name; });
  return found == std::end(kCommands) ? nullptr : found;
}

std::string CommandSummary() {
  std::string summary;
  for (const Command& command : kCommands) {
    const std::string usage = std::string(command.name) + (command.arguments.empty() ? "" : " ") +
                              std::string(command.arguments);
    summary += base::Format("  %-28s %s\n", usage, std::string(command.help));
  }
  return summary;
}

}  // namespace brevant::cli
