// SPDX-License-Identifier: MIT
#include "symbols/symbol_table.h"

#include <utility>

#include "base/text_format.h"

namespace brevant::symbols {
namespace {

// ASCII only: what a tool chain puts into a name must not depend on the desktop's language.
char Upper(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

std::string Key(std::string_view name) {
  std::string key(name);
  for (char& c : key) c = Upper(c);
  return key;
}

}  // namespace

void SymbolTable::Clear() {
  Assign({});
}

void SymbolTable::Assign(std::vector<Symbol> symbols) {
  ++generation_;
  symbols_ = std::move(symbols);
  by_address_.clear();
  by_name_.clear();
  by_address_.reserve(symbols_.size());
  by_name_.reserve(symbols_.size());
  for (std::size_t i = 0; i < symbols_.size(); ++i) {
    by_address_.try_emplace(symbols_[i].address, i);
    by_name_.try_emplace(Key(symbols_[i].name), i);
  }
}

std::optional<std::string_view> SymbolTable::FindSymbolName(base::Address address) const {
  const auto found = by_address_.find(address);
  if (found == by_address_.end()) return {};
  return symbols_[found->second].name;
}

const Symbol* SymbolTable::FindSymbol(std::string_view name) const {
  const auto found = by_name_.find(Key(name));
  return found == by_name_.end() ? nullptr : &symbols_[found->second];
}

std::optional<base::Address> SymbolTable::FindSymbolAddress(std::string_view name) const {
  const Symbol* symbol = FindSymbol(name);
  if (symbol == nullptr) return {};
  return symbol->address;
}

std::string SymbolTable::SymbolName(base::Address address) const {
  const auto name = FindSymbolName(address);
  return name ? std::string(*name) : base::Format("%x", base::Low16(address));
}

}  // namespace brevant::symbols
