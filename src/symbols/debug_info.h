// SPDX-License-Identifier: MIT
// What is known of the loaded program besides its bytes: symbols, source lines and whether they
// belong to it. One object, handed to whoever looks things up or replaces them.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "symbols/function.h"
#include "symbols/line_table.h"
#include "symbols/parsed_program.h"
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
  std::vector<Function> functions;  // ascending; empty where the tool chain does not tell
  std::vector<Variable> variables;  // of the program and its modules
  Types types;                      // theirs, and those of the functions' locals
  std::string directory;            // that the lines' files are named from
  // The tables belong to the loaded program. Cleared by flash commands and by loading symbols.
  bool DebugInfoLoaded = false;
  // The tool chain in force; setting "compiler" as last read.
  ToolChain tool_chain = ToolChain::FreeAssembler;

  void Assign(ParsedProgram program, std::string from_directory) {
    SymbolTable.Assign(std::move(program.symbols));
    LineTable.Assign(std::move(program.lines), std::move(program.files));
    functions = std::move(program.functions);
    variables = std::move(program.variables);
    types = std::move(program.types);
    directory = std::move(from_directory);
  }
  // The symbols stay.
  void ForgetLines() {
    LineTable.Clear();
    functions.clear();
    variables.clear();
    types = {};
  }
};

}  // namespace brevant::symbols
