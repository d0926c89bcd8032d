// SPDX-License-Identifier: MIT
// What an importer makes of a tool chain's output: a value, whole or with the reason why there is
// none. The tables are only touched once it is complete.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "symbols/function.h"
#include "symbols/line_table.h"
#include "symbols/symbol_table.h"

namespace brevant::symbols {

// The index of a line entry that no source file belongs to.
inline constexpr std::uint32_t kNoSourceFile = 0xFFFFFFFF;

// The contents of the three intermediate files of an assembler listing (see info_files.h).
struct InfoFiles {
  std::string source;     // "info.src"
  std::string symbols;    // "info.sym"
  std::string addresses;  // "info.add"
};

struct ParsedProgram {
  std::vector<Symbol> symbols;
  std::vector<LineEntry> lines;
  std::vector<std::string> files;
  std::vector<Function> functions;  // ascending
  std::vector<Variable> variables;  // of the program and its modules; locals stand in functions
  Types types;
  // 16-bit values that the output asks to be written to the reset vector, in order.
  std::vector<std::uint16_t> reset_vectors;
  // Set by the listing importers, which leave symbols and lines to be read back from these files.
  std::optional<InfoFiles> info_files;

  // Why there is nothing to use, for people; empty when there is something.
  std::string problem;
  // The problem is a file that does not look like this tool chain's at all.
  bool wrong_format = false;

  bool HasContent() const { return !symbols.empty() || !lines.empty(); }
};

// A program without content.
inline ParsedProgram NothingParsed(std::string problem, bool wrong_format = false) {
  ParsedProgram program;
  program.problem = std::move(problem);
  program.wrong_format = wrong_format;
  return program;
}

}  // namespace brevant::symbols
