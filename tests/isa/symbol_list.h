// SPDX-License-Identifier: MIT
// A handful of symbols for tests.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "base/file_names.h"
#include "isa/symbol_names.h"

namespace brevant::isa {

class SymbolList final : public SymbolNames {
 public:
  SymbolList(std::initializer_list<std::pair<std::string, base::Address>> symbols)
      : symbols_(symbols) {}
  std::optional<std::string_view> FindSymbolName(base::Address address) const override {
    for (const auto& [name, at] : symbols_) {
      if (at == address) return name;
    }
    return {};
  }
  std::optional<base::Address> FindSymbolAddress(std::string_view name) const override {
    for (const auto& [known, at] : symbols_) {
      if (base::EqualIgnoringCase(known, name)) return at;
    }
    return {};
  }

 private:
  std::vector<std::pair<std::string, base::Address>> symbols_;
};

}  // namespace brevant::isa
