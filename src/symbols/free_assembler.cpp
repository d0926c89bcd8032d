// SPDX-License-Identifier: MIT
#include "symbols/free_assembler.h"

#include <string>
#include <vector>

#include "symbols/info_files.h"
#include "symbols/text_lines.h"

namespace brevant::symbols {
namespace {

constexpr std::size_t kLineLimit = 254;
constexpr std::size_t kBytes = 5;
constexpr std::size_t kSource = 24;

}  // namespace

ParsedProgram ParseFreeAssemblerListing(std::string_view listing) {
  LineReader head(listing, kLineLimit);
  head.Skip(1);
  if (!head.Next().value_or("").starts_with("as12")) {
    return NothingParsed("line 2 does not begin with \"as12\"", true);
  }
  LineReader reader(listing, kLineLimit);
  reader.Skip(5);
  InfoFilesBuilder info;
  std::vector<std::string_view> pending;  // labels that wait for the next line with code
  while (const auto line = reader.Next()) {
    if (line->size() + 1 < kSource) continue;
    info.AddSourceLine(Columns(*line, kSource));
    const char first = At(*line, kSource);
    if (IsSpace(At(*line, 0))) {
      if (IsLetter(first)) pending.push_back(LabelAt(*line, kSource));
      continue;
    }
    const std::string_view address = Columns(*line, 0, 4);
    if (!IsSpace(At(*line, kBytes))) {
      info.AddAddress(address);
      for (const std::string_view label : pending) info.AddSymbol(label, address);
      pending.clear();
    }
    if (first != ';' && !IsSpace(first)) info.AddSymbol(LabelAt(*line, kSource), address);
  }
  ParsedProgram program;
  program.info_files = info.Take();
  return program;
}

}  // namespace brevant::symbols
