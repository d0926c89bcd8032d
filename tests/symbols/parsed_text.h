// SPDX-License-Identifier: MIT
// A parsed program as text, so that tests compare it whole: one symbol "name address", one line
// "address file:line" each.
#pragma once

#include "base/text_format.h"
#include "symbols/parsed_program.h"

namespace brevant::symbols {

inline std::string FileName(const std::vector<std::string>& files, std::uint32_t index) {
  return index < files.size() ? files[index] : "?";
}

inline std::string SymbolsText(const ParsedProgram& program) {
  std::string text;
  for (const Symbol& s : program.symbols) text += base::Format("%s %04X\n", s.name, s.address);
  return text;
}

inline std::string LinesText(const ParsedProgram& program) {
  std::string text;
  for (const LineEntry& e : program.lines) {
    text += base::Format("%04X %s:%u\n", e.address, FileName(program.files, e.file), e.line);
  }
  return text;
}

}  // namespace brevant::symbols
