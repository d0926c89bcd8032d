// SPDX-License-Identifier: MIT
#include "views/watch_form.h"

#include <algorithm>

#include "base/file_names.h"
#include "base/text_format.h"
#include "base/text_number.h"
#include "views/messages.h"
#include "views/watch_file.h"

namespace brevant::views {
namespace {

bool IsHexNumber(std::string_view text) {
  return !text.empty() && base::IsHexField(text);
}

std::string Trimmed(std::string_view text) {
  const std::size_t first = std::min(text.find_first_not_of(' '), text.size());
  return std::string(text.substr(first, text.find_last_not_of(' ') + 1 - first));
}

// Past the digits that a number of 32 bits has room for.
bool IsBeyondMemory(std::string_view hex) {
  hex.remove_prefix(std::min(hex.find_first_not_of('0'), hex.size()));
  return hex.size() > 4;
}

std::optional<WatchForm::Refusal> Refused(const WatchForm& form) {
  using Field = WatchForm::Field;
  if (form.display == watch_codes::kString && !IsHexNumber(form.length)) {
    return WatchForm::Refusal{Field::Length, messages::kExpectLength};
  }
  if (!IsHexNumber(form.address))
    return WatchForm::Refusal{Field::Address, messages::kExpectAddress};
  if (IsBeyondMemory(form.address)) {
    return WatchForm::Refusal{Field::Address,
                              base::Format(messages::kBeyondAddressSpace, form.address)};
  }
  if (form.symbol.find('@') != std::string::npos) {
    return WatchForm::Refusal{Field::Symbol, messages::kNoAtInNames};
  }
  return std::nullopt;
}

}  // namespace

WatchForm WatchForm::ToAdd() {
  return {.title = "Add watch"};
}

WatchForm WatchForm::ToModify(const WatchItem& item) {
  WatchForm form{.title = "Modify Setting",
                 .symbol = item.name,
                 .address = base::Format("%x", item.address),
                 .display = item.display,
                 .width = item.width,
                 .sign = item.sign};
  if (item.IsString()) form.length = base::Format("%x", item.bytes());
  return form;
}

std::vector<std::string> WatchForm::Choices(const symbols::DebugInfo& info) {
  std::vector<std::string> names;
  for (const symbols::Symbol& known : info.SymbolTable.symbols()) names.push_back(known.name);
  return names;
}

void WatchForm::ChooseSymbol(std::string_view name, const symbols::DebugInfo& info) {
  symbol = name;
  if (name.size() < 2) return;
  if (const auto known = FindWatched(name, info)) address = base::Format("%05lx", *known);
}

void WatchForm::TypeSymbol(std::string_view text, const symbols::DebugInfo& info) {
  ChooseSymbol(base::UpperCase(text), info);
}

std::optional<WatchForm::Refusal> WatchForm::Check(base::UserInterface& ui) const {
  auto refused = Refused(*this);
  if (refused) ui.Beep();
  return refused;
}

WatchItem WatchForm::Item(const symbols::DebugInfo& info) const {
  WatchItem item{.address = base::ParseHex(address),
                 .name = Trimmed(symbol).substr(0, kMostName),
                 .display = display,
                 .width = width,
                 .sign = sign};
  if (item.IsString()) {
    const std::uint32_t wanted = base::ParseHex(length);
    item.lengthOrValue =
        static_cast<std::int32_t>(std::min<std::uint32_t>(wanted, WatchItem::kMostString));
  }
  if (item.name.empty()) item.name = base::Format("%lX", item.address);
  const auto known = FindWatched(item.name, info);
  item.resolved = known.has_value();
  item.address = known.value_or(item.address);
  return item;
}

}  // namespace brevant::views
