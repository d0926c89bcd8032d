// SPDX-License-Identifier: MIT
// What is known of the loaded program besides its bytes: symbols, source lines and whether they
// belong to it. One object, handed to whoever looks things up or replaces them.
#pragma once

#include "symbols/line_table.h"
#include "symbols/symbol_table.h"

namespace brevant::symbols {

// Values of setting "compiler".
enum class ToolChain {
  FreeAssembler = 1,
  MotorolaAssembler = 2,
  McuezAssembler = 4,
  Imagecraft = 8,
  Introl = 16,
  Sdcc = 32,
};

struct DebugInfo {
  symbols::SymbolTable SymbolTable;
  symbols::LineTable LineTable;
  // The tables belong to the loaded program. Cleared by flash commands and by loading symbols.
  bool DebugInfoLoaded = false;
  // The tool chain in force; setting "compiler" as last read.
  ToolChain tool_chain = ToolChain::FreeAssembler;
};

}  // namespace brevant::symbols
