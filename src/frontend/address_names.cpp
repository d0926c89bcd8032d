// SPDX-License-Identifier: MIT
#include "frontend/address_names.h"

#include <optional>

#include "base/file_names.h"
#include "base/text_format.h"
#include "base/text_number.h"

namespace brevant::frontend {
namespace {

std::optional<base::Address> AddressOfLine(std::string_view file, std::string_view line,
                                           const symbols::LineTable& table) {
  const auto number = static_cast<std::uint32_t>(base::ParseLeadingDecimal(line));
  for (std::uint32_t n = 0; n < table.files().size(); ++n) {
    if (!base::EqualIgnoringCase(table.files()[n], file)) continue;
    if (const auto found = table.AddressForLine(number, n)) return found;
  }
  return std::nullopt;
}

}  // namespace

Parsed<base::Address> ResolveAddress(std::string_view word, const symbols::DebugInfo& info) {
  Parsed<base::Address> address = ParseAddress(word);
  if (address.ok() || (!word.empty() && base::IsHexField(word))) return address;
  if (const auto symbol = info.SymbolTable.FindCName(word)) return {base::Low16(*symbol)};
  const std::size_t colon = word.rfind(':');
  if (colon == std::string_view::npos) return address;
  const auto line = AddressOfLine(word.substr(0, colon), word.substr(colon + 1), info.LineTable);
  if (line) return {base::Low16(*line)};
  return {.error = base::Format("no code is known for %s", std::string(word))};
}

std::string Described(base::Address address, const symbols::DebugInfo& info) {
  const auto name = info.SymbolTable.FindSymbolName(address);
  return base::Format("%04x", address) + (name ? " " + std::string(*name) : "");
}

}  // namespace brevant::frontend
