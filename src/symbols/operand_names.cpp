// SPDX-License-Identifier: MIT
#include "symbols/operand_names.h"

#include <string>

namespace brevant::symbols {

std::optional<std::string_view> OperandNames::FindSymbolName(base::Address address) const {
  return symbols_.FindSymbolName(address);
}

std::optional<std::string_view> OperandNames::FindDataName(base::Address address) const {
  if (const auto name = symbols_.FindSymbolName(address)) return name;
  const devices::Register* const row = devices::FindRegister(memory_.device(), address);
  const bool shown = row != nullptr && settings_.Integer(base::keys::kRegisterNames) != 0;
  return shown ? std::optional(row->name) : std::nullopt;
}

std::optional<base::Address> OperandNames::FindSymbolAddress(std::string_view name) const {
  if (const auto address = symbols_.FindSymbolAddress(name)) return address;
  // As C says it.
  if (const auto address = symbols_.FindSymbolAddress('_' + std::string(name))) return address;
  const devices::Register* const row = devices::FindRegister(memory_.device(), name);
  return row != nullptr ? std::optional(row->address) : std::nullopt;
}

}  // namespace brevant::symbols
