// SPDX-License-Identifier: MIT
// The names that code is shown with and may be written with: the program's symbols, and behind them
// the registers of the device where an operand is the address of data. The setting "RegisterNames"
// takes the registers out of what is shown; what is typed may always have them, and names of C
// without the underscore that stands before their symbols.
#pragma once

#include <optional>
#include <string_view>

#include "base/settings_file.h"
#include "isa/symbol_names.h"
#include "memory/memory.h"
#include "symbols/symbol_table.h"

namespace brevant::symbols {

// Asks all three when it is asked; borrows them.
class OperandNames final : public isa::SymbolNames {
 public:
  OperandNames(const SymbolTable& symbols, const memory::Memory& memory,
               const base::SettingsFile& settings)
      : symbols_(symbols), memory_(memory), settings_(settings) {}

  std::optional<std::string_view> FindSymbolName(base::Address address) const override;
  std::optional<std::string_view> FindDataName(base::Address address) const override;
  std::optional<base::Address> FindSymbolAddress(std::string_view name) const override;

 private:
  const SymbolTable& symbols_;
  const memory::Memory& memory_;
  const base::SettingsFile& settings_;
};

}  // namespace brevant::symbols
