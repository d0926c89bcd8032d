// SPDX-License-Identifier: MIT
#include "frontend/address_names.h"

#include "base/text_format.h"
#include "symbols/places.h"

namespace brevant::frontend {

Parsed<base::Address> ResolveAddress(std::string_view word, const symbols::DebugInfo& info) {
  const symbols::Place place = symbols::FindPlace(word, info);
  if (place.address) return {.value = *place.address, .note = place.note};
  if (place.problem.empty()) return ParseAddress(word);
  return {.error = place.problem, .well_formed = place.well_formed};
}

std::string Described(base::Address address, const symbols::DebugInfo& info) {
  const auto name = info.SymbolTable.FindSymbolName(address);
  return base::Format("%04x", address) + (name ? " " + std::string(*name) : "");
}

}  // namespace brevant::frontend
