// SPDX-License-Identifier: MIT
#include "frontend/address_names.h"

#include "base/text_format.h"
#include "base/text_number.h"
#include "devices/registers.h"
#include "symbols/places.h"

namespace brevant::frontend {

Parsed<base::Address> ResolveAddress(std::string_view word, const symbols::DebugInfo& info,
                                     const devices::Device& device) {
  const symbols::Place place = symbols::FindPlace(word, info);
  if (place.address) return {.value = *place.address, .note = place.note};
  const devices::Register* const row = devices::FindRegister(device, word);
  if (row != nullptr && !place.well_formed) return {.value = row->address};
  if (!place.problem.empty()) return {.error = place.problem, .well_formed = place.well_formed};
  Parsed<base::Address> number = ParseAddress(word);
  if (!number.ok() && !word.empty() && !base::IsHexField(word)) {
    number.error += ". Nor is it the name of a symbol, a line (FILE:LINE) or a register of the " +
                    std::string(device.name);
  }
  return number;
}

std::string Described(base::Address address, const symbols::DebugInfo& info) {
  const auto name = info.SymbolTable.FindSymbolName(address);
  return base::Format("%04x", address) + (name ? " " + std::string(*name) : "");
}

}  // namespace brevant::frontend
