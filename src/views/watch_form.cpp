// SPDX-License-Identifier: MIT
#include "views/watch_form.h"

#include <algorithm>
#include <cctype>
#include <utility>

#include "base/file_names.h"
#include "base/text_format.h"
#include "base/text_number.h"
#include "views/messages.h"
#include "views/watched_name.h"

namespace brevant::views {
namespace {

constexpr std::pair<int, char> kWidthCodes[] = {
    {1, watch_codes::kByte}, {2, watch_codes::kWord}, {4, watch_codes::kLong}};

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

std::optional<WatchForm::Refusal> Refused(const WatchForm& form, const symbols::DebugInfo& info) {
  using Field = WatchForm::Field;
  if (form.display == watch_codes::kString && !IsHexNumber(form.length)) {
    return WatchForm::Refusal{Field::Length, messages::kExpectLength};
  }
  // Of an expression the address is only known at a stop.
  const bool is_expression = IsExpression(Trimmed(form.symbol), info);
  const bool is_named = is_expression || FindWatched(Trimmed(form.symbol), info);
  if (!IsHexNumber(form.address) && !(is_named && form.address.empty())) {
    if (form.address.empty() && !Trimmed(form.symbol).empty()) {
      return WatchForm::Refusal{Field::Address,
                                base::Format(messages::kNoSuchName, Trimmed(form.symbol))};
    }
    return WatchForm::Refusal{Field::Address, messages::kExpectAddress};
  }
  if (is_expression && Trimmed(form.symbol).size() > WatchItem::kMostName) {
    return WatchForm::Refusal{Field::Symbol,
                              base::Format(messages::kNameTooLong, WatchItem::kMostName)};
  }
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
                 .adds = false,
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

void WatchForm::ChooseSymbol(std::string_view name, const WatchNames& names) {
  symbol = name;
  if (name.size() < 2 && !IsExpression(name, names.info)) return;
  if (const auto known = FindWatched(name, names.info)) address = base::Format("%05lx", *known);
  if (names.context == nullptr) {
    // The target is not to be asked, but the type of a plain name is known without it.
    const auto& variables = names.info.variables;
    const auto known = std::ranges::find(variables, name, &symbols::Variable::name);
    if (adds && known != variables.end()) {
      TakeType(names.info.types[known->type], names.info.types);
    }
    return;
  }
  const auto result = EvaluateWatched(name, *names.context);
  if (!result || !result->ok()) return;
  if (result->value.place) address = base::Format("%05lx", result->value.place->address);
  if (adds) TakeType(result->value.type, names.info.types);
}

void WatchForm::TypeSymbol(std::string_view text, const WatchNames& names) {
  // In an expression capitals would name other members, and C tells names by their case.
  const bool is_name = std::ranges::all_of(
      text, [](unsigned char c) { return c == '_' || c == ' ' || std::isalnum(c) != 0; });
  const bool as_it_is = !is_name || IsSpeltSo(Trimmed(text), names.info);
  ChooseSymbol(as_it_is ? std::string(text) : base::UpperCase(text), names);
}

void WatchForm::TakeType(const symbols::Type& type, const symbols::Types& types) {
  const symbols::Type& element = types[type.target];
  if (type.kind == symbols::Type::Kind::Array && element.size == 1 && eval::IsInteger(element)) {
    display = watch_codes::kString;
    length = base::Format("%x", std::min(type.count, WatchItem::kMostString));
    return;
  }
  if (display == watch_codes::kString) display = watch_codes::kHex;
  // Of an array the first element is watched.
  const symbols::Type& watched = type.kind == symbols::Type::Kind::Array ? element : type;
  if (!eval::IsScalar(watched)) return;
  for (const auto& [size, code] : kWidthCodes) {
    if (watched.size == size) width = code;
  }
  sign = watched.is_signed ? watch_codes::kSigned : watch_codes::kUnsigned;
}

std::optional<WatchForm::Refusal> WatchForm::Check(const WatchNames& names,
                                                   base::UserInterface& ui) const {
  auto refused = Refused(*this, names.info);
  if (refused) ui.Beep();
  return refused;
}

WatchItem WatchForm::Item(const symbols::DebugInfo& info) const {
  WatchItem item{.address = base::ParseHex(address),
                 .name = Trimmed(symbol),
                 .display = display,
                 .width = width,
                 .sign = sign};
  if (!IsExpression(item.name, info))
    item.name.resize(std::min<std::size_t>(item.name.size(), kMostName));
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
