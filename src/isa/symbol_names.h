// SPDX-License-Identifier: MIT
// What the disassembler and the assembler ask of a symbol table.
#pragma once

#include <optional>
#include <string_view>

#include "base/address.h"

namespace brevant::isa {

class SymbolNames {
 public:
  virtual ~SymbolNames() = default;

  // The name of the first symbol whose address equals the value exactly (in full width).
  virtual std::optional<std::string_view> FindSymbolName(base::Address address) const = 0;
  // The same for an operand that is the address of data. A table that knows more names of such
  // places than of code gives them here.
  virtual std::optional<std::string_view> FindDataName(base::Address address) const {
    return FindSymbolName(address);
  }
  // The address of the first symbol with this name, ignoring case.
  virtual std::optional<base::Address> FindSymbolAddress(std::string_view name) const = 0;
};

// A table without symbols.
class NoSymbols final : public SymbolNames {
 public:
  std::optional<std::string_view> FindSymbolName(base::Address) const override { return {}; }
  std::optional<base::Address> FindSymbolAddress(std::string_view) const override { return {}; }
};

}  // namespace brevant::isa
