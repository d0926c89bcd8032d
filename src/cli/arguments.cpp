// SPDX-License-Identifier: MIT
#include "cli/arguments.h"

#include <fmt/format.h>

#include <algorithm>

#include "frontend/address_names.h"

namespace brevant::cli {
namespace {

using Value = ParsedArguments::Value;
using Words = std::span<const std::string>;

// Whether the word is among those that '|' separates.
bool IsAmong(std::string_view word, std::string_view names) {
  while (!names.empty()) {
    const std::size_t end = std::min(names.find('|'), names.size());
    if (names.substr(0, end) == word) return true;
    names.remove_prefix(std::min(end + 1, names.size()));
  }
  return false;
}

bool TakesAllWords(const Argument& argument) {
  return argument.kind == Kind::Bytes || argument.kind == Kind::Rest;
}

bool CountFits(const ArgumentList& list, std::size_t words) {
  const auto used = [](const Argument& a) { return a.kind != Kind::None && a.kind != Kind::Flag; };
  const auto needed = [&used](const Argument& a) { return used(a) && !a.optional; };
  const auto least = std::ranges::count_if(list, needed);
  const auto most = std::ranges::count_if(list, used);
  const auto count = static_cast<std::ptrdiff_t>(words);
  return count >= least && (count <= most || std::ranges::any_of(list, TakesAllWords));
}

frontend::Parsed<Value> ParseBytes(Words words, base::Address address) {
  std::vector<std::uint8_t> bytes;
  for (const std::string& word : words) {
    const auto byte = frontend::ParseHexNumber(word, 0xFF, "byte");
    if (!byte.ok()) return {.error = byte.error};
    bytes.push_back(static_cast<std::uint8_t>(byte.value));
  }
  if (bytes.size() > base::kAddressSpace - address) {
    return {.error = fmt::format("{} bytes from {:04X} go beyond FFFF", bytes.size(), address)};
  }
  return {.value = std::move(bytes)};
}

std::string Joined(Words words) {
  std::string text;
  for (const std::string& word : words) text += (text.empty() ? "" : " ") + word;
  return text;
}

template <typename T>
frontend::Parsed<Value> AsValue(const frontend::Parsed<T>& parsed) {
  return {.value = static_cast<std::uint32_t>(parsed.value),
          .error = parsed.error,
          .well_formed = parsed.well_formed,
          .note = parsed.note};
}

// words begins with the argument's own; before are the values of those before it.
frontend::Parsed<Value> Parse(const Argument& argument, Words words, const ParsedArguments& before,
                              const symbols::DebugInfo& info, const devices::Device& device) {
  const std::string& word = words.front();
  switch (argument.kind) {
    case Kind::Address: {
      const std::size_t others = argument.name.find('|');
      if (others != std::string_view::npos && IsAmong(word, argument.name.substr(others + 1))) {
        return {.value = word};
      }
      return AsValue(frontend::ResolveAddress(word, info, device));
    }
    case Kind::Count:
      return AsValue(frontend::ParseCount(word, static_cast<int>(argument.limit)));
    case Kind::Hex:
      return AsValue(frontend::ParseHexNumber(word, argument.limit, argument.what));
    case Kind::Bytes:
      return ParseBytes(words, before.Number(0));
    case Kind::Rest:
      return {.value = Joined(words)};
    case Kind::Word:
    case Kind::Text:
    case Kind::File:
    case Kind::Flag:
    case Kind::None:
      break;
  }
  return {.value = word};
}

}  // namespace

std::string Usage(const ArgumentList& list) {
  std::string usage;
  std::string brackets;
  for (const Argument& argument : list) {
    if (argument.kind == Kind::None) break;
    if (!usage.empty()) usage += ' ';
    if (argument.kind == Kind::Flag) {
      usage += fmt::format("[{}]", argument.name);
      continue;
    }
    if (argument.optional) {
      usage += '[';
      brackets += ']';
    }
    usage += argument.name;
    if (argument.kind == Kind::Bytes) usage += "...";
  }
  return usage + brackets;
}

frontend::Parsed<ParsedArguments> ParseArguments(std::string_view command, const ArgumentList& list,
                                                 Words given, const symbols::DebugInfo& info,
                                                 const devices::Device& device) {
  const std::string usage = fmt::format("usage: {} {}", command, Usage(list));
  frontend::Parsed<ParsedArguments> parsed;
  std::vector<std::string> words(given.begin(), given.end());
  for (const Argument& argument : list) {
    if (argument.kind != Kind::Flag || std::erase(words, argument.name) == 0) continue;
    parsed.value.AddFlag(argument.name);
  }
  if (!CountFits(list, words.size())) return {.error = usage};
  for (std::size_t n = 0; n < words.size() && n < list.size(); ++n) {
    const Argument& argument = list[n];
    if (argument.kind == Kind::Word && !IsAmong(words[n], argument.name)) return {.error = usage};
    auto value = Parse(argument, Words(words).subspan(n), parsed.value, info, device);
    if (!value.ok()) return {.error = value.error, .well_formed = value.well_formed};
    if (!value.note.empty()) parsed.value.notes.push_back(value.note);
    parsed.value.Add(std::move(value.value));
    if (TakesAllWords(argument)) break;
  }
  return parsed;
}

}  // namespace brevant::cli
