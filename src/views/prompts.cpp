// SPDX-License-Identifier: MIT
#include "views/prompts.h"

#include <algorithm>

#include "base/text_format.h"
#include "base/text_number.h"
#include "symbols/places.h"
#include "views/messages.h"

namespace brevant::views {
namespace {

constexpr std::size_t kAddressDigits = 4;

std::string_view WithoutBlanks(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(" \t"), text.size()));
  return text.substr(0, text.find_last_not_of(" \t") + 1);
}

// An address as people write one. Nothing for other text: refusal is then `expected`, or says that
// the number is too large.
std::optional<base::Address> ParseAddress(std::string_view text, const char* expected,
                                          std::string& refusal) {
  refusal = expected;
  std::string_view digits = WithoutBlanks(text);
  for (const std::string_view prefix : {"0x", "0X", "$"}) {
    if (digits.starts_with(prefix)) {
      digits.remove_prefix(prefix.size());
      break;
    }
  }
  if (digits.empty() || !base::IsHexField(digits)) return std::nullopt;
  const std::string_view number =
      digits.substr(std::min(digits.find_first_not_of('0'), digits.size()));
  if (number.size() > kAddressDigits) {
    refusal = base::Format(messages::kBeyondAddressSpace, std::string(number));
    return std::nullopt;
  }
  return base::ParseHex(number);
}

}  // namespace

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
  const auto address = ParseAddress(text, messages::kExpectAddress, refusal_);
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
  const std::string_view name = WithoutBlanks(text.substr(0, kMaxLength));
  const auto address = ParseAddress(name, messages::kExpectSymbol, refusal_);
  if (!name.empty()) {
    const symbols::SymbolTable& table = debug_info_.SymbolTable;
    if (const auto exact = table.FindSymbolAddress(name)) return exact;
    const symbols::Place place = symbols::FindPlace(name, debug_info_);
    if (place.address) return place.address;
    if (address) return address;
    if (!place.problem.empty()) refusal_ = place.problem;
  }
  ui_.Beep();
  return std::nullopt;
}

}  // namespace brevant::views
