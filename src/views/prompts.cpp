// SPDX-License-Identifier: MIT
#include "views/prompts.h"

#include "base/text_format.h"
#include "base/text_number.h"

namespace brevant::views {

void AddressHistory::Add(base::Address address) {
  std::erase(entries_, address);
  entries_.insert(entries_.begin(), address);
  if (entries_.size() > kEntries) entries_.pop_back();
}

std::vector<std::string> AddressPrompt::Choices() const {
  std::vector<std::string> choices;
  for (const base::Address address : history_.entries()) {
    choices.push_back(base::Format("%06lx", address));
  }
  return choices;
}

std::string AddressPrompt::InitialText() const {
  const auto& entries = history_.entries();
  return entries.empty() ? "" : base::Format("%06lx", entries.front());
}

std::optional<base::Address> AddressPrompt::Accept(std::string_view text) {
  const auto address = base::ParseHexExactly(text, kMaxLength);
  if (address) {
    history_.Add(*address);
  } else {
    ui_.Beep();
  }
  return address;
}

std::vector<std::string> SymbolPrompt::Choices() const {
  std::vector<std::string> names;
  for (const symbols::Symbol& symbol : debug_info_.SymbolTable.symbols()) {
    names.push_back(symbol.name);
  }
  return names;
}

std::optional<base::Address> SymbolPrompt::Accept(std::string_view text) {
  const std::string_view name = text.substr(0, kMaxLength);
  if (!name.empty()) {
    const symbols::SymbolTable& table = debug_info_.SymbolTable;
    const bool named = debug_info_.DebugInfoLoaded;
    if (const auto exact = table.FindSymbolAddress(name); named && exact) return exact;
    if (base::IsHexField(name)) return base::ParseHex(name);
    if (const auto c_name = table.FindCName(name); named && c_name) return c_name;
  }
  ui_.Beep();
  return std::nullopt;
}

}  // namespace brevant::views
