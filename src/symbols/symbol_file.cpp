// SPDX-License-Identifier: MIT
#include "symbols/symbol_file.h"

#include <algorithm>

#include "base/files.h"
#include "base/text_number.h"
#include "symbols/text_lines.h"

namespace brevant::symbols {
namespace {

constexpr std::size_t kLineLimit = 254;
constexpr std::size_t kMaxDigits = 5;

std::optional<Symbol> ParseSymbolLine(std::string_view line) {
  if (line.size() < 3) return {};
  const auto name_end = std::ranges::find_if(line, IsSpace);
  if (name_end == line.end()) return {};
  const auto value_start = std::find_if_not(name_end, line.end(), IsSpace);
  const std::string_view value(value_start, line.end());
  if (value.size() > kMaxDigits || !base::IsHexField(value)) return {};
  return Symbol{std::string(line.begin(), name_end), base::ParseHex(value), 0, {}};
}

}  // namespace

std::vector<Symbol> ParseSymbolFile(std::string_view text, std::string_view starting_string) {
  LineReader reader(text, kLineLimit);
  std::vector<Symbol> symbols;
  while (const auto line = reader.Next()) {
    if (line->find(starting_string) != std::string_view::npos) break;
  }
  while (const auto line = reader.Next()) {
    if (auto symbol = ParseSymbolLine(*line)) symbols.push_back(std::move(*symbol));
  }
  return symbols;
}

bool LoadSymbolFile(const std::string& path, std::string_view starting_string, DebugInfo& info) {
  info.DebugInfoLoaded = false;
  info.ForgetLines();
  const base::FileText file = base::ReadFile(path);
  // A program or an image is no list of names, whatever its bytes look like.
  const bool is_text = file.text.find('\0') == std::string::npos;
  info.SymbolTable.Assign(file.ok() && is_text ? ParseSymbolFile(file.text, starting_string)
                                               : std::vector<Symbol>());
  return !info.SymbolTable.empty();
}

}  // namespace brevant::symbols
