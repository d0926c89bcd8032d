// SPDX-License-Identifier: MIT
#include "symbols/sdcc_map.h"

#include <string>

#include "symbols/text_lines.h"

namespace brevant::symbols {

std::vector<Symbol> ParseSdccMap(std::string_view map) {
  std::vector<Symbol> symbols;
  LineReader reader(map);
  while (const auto line = reader.Next()) {
    std::string_view text = *line;
    if (text.starts_with("C:")) text.remove_prefix(2);
    if (!text.starts_with(' ')) continue;
    const auto words = Words(text);
    // The linker's names for lengths and starts of areas belong to no module.
    if (words.size() != 3 || words[0].size() != 8 || !IsHexNumber(words[0])) continue;
    const bool is_own_name = words[1].starts_with('.') || words[1].find('$') != words[1].npos;
    if (!is_own_name)
      symbols.push_back({.name = std::string(words[1]),
                         .address = *LeadingHex(words[0]),
                         .type = {},
                         .module = std::string(words[2])});
  }
  return symbols;
}

}  // namespace brevant::symbols
