// SPDX-License-Identifier: MIT
#include "symbols/motorola_assembler.h"

#include <string>

#include "symbols/info_files.h"
#include "symbols/text_lines.h"

namespace brevant::symbols {
namespace {

constexpr std::size_t kLineLimit = 254;
constexpr std::size_t kAddress = 7;
constexpr std::size_t kAddressDigits = 6;
constexpr std::size_t kSource = 26;

}  // namespace

ParsedProgram ParseMotorolaListing(std::string_view listing) {
  LineReader head(listing, kLineLimit);
  head.Skip(1);
  if (!head.Next().value_or("").starts_with("68HC12")) {
    return NothingParsed("line 2 does not begin with \"68HC12\"", true);
  }
  LineReader reader(listing, kLineLimit);
  reader.Skip(6);
  InfoFilesBuilder info;
  while (const auto line = reader.Next()) {
    if (line->size() + 1 <= kSource) continue;
    const std::string_view address = line->substr(kAddress, kAddressDigits);
    const bool has_address = IsHexNumber(address);
    if (!has_address && !IsBlank(address)) continue;
    info.AddSourceLine(Columns(*line, kSource));
    const bool has_label = IsLetter(At(*line, kSource));
    if (!has_address) {
      if (!has_label) continue;
      const std::string value = std::string(Columns(*line, 30, 4)).append(Columns(*line, 35, 4));
      info.AddSymbol(LabelAt(*line, kSource), value);
      continue;
    }
    if (!IsSpace(At(*line, kSource + 1))) info.AddAddress(address);
    if (has_label) info.AddSymbol(LabelAt(*line, kSource), address);
  }
  ParsedProgram program;
  program.info_files = info.Take();
  return program;
}

}  // namespace brevant::symbols
