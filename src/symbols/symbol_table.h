// SPDX-License-Identifier: MIT
// Names and their target addresses, in file order: the first match wins. Replaced as a whole by
// each load.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "base/address.h"
#include "isa/symbol_names.h"

namespace brevant::symbols {

enum class Scope { Global, Module, Function };

struct Symbol {
  std::string name;
  base::Address address = 0;
  int size = 0;      // bytes of a variable where the tool chain says so, else 0
  std::string type;  // e.g. "unsigned char[8]" where the tool chain says so, else empty
  Scope scope = Scope::Global;
  std::string module = {};  // that defines it, as the tool chain spells it; empty: not told
};

class SymbolTable final : public isa::SymbolNames {
 public:
  const std::vector<Symbol>& symbols() const { return symbols_; }
  bool empty() const { return symbols_.empty(); }
  void Clear();
  void Assign(std::vector<Symbol> symbols);
  // Moves whenever the symbols are replaced.
  long generation() const { return generation_; }

  std::optional<std::string_view> FindSymbolName(base::Address address) const override;
  std::optional<base::Address> FindSymbolAddress(std::string_view name) const override;
  // The first symbol with the name, ignoring case. Null when there is none; valid until the table
  // changes.
  const Symbol* FindSymbol(std::string_view name) const;
  // The name, or the low 16 bits in lower-case hexadecimal without leading zeros.
  std::string SymbolName(base::Address address) const;

 private:
  long generation_ = 0;
  std::vector<Symbol> symbols_;
  // First entry with an address; first entry with a name in upper case.
  std::unordered_map<base::Address, std::size_t> by_address_;
  std::unordered_map<std::string, std::size_t> by_name_;
};

}  // namespace brevant::symbols
