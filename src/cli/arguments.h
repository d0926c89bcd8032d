// SPDX-License-Identifier: MIT
// What a command is given, as rows of its table: usage text, the count of words, parsing and the
// errors all come from the row.
#pragma once

#include <array>
#include <cstdint>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "devices/device.h"
#include "frontend/typed_numbers.h"
#include "symbols/debug_info.h"

namespace brevant::cli {

enum class Kind {
  None,     // no such argument
  Address,  // of a place, as symbols/places.h reads it
  Count,    // decimal, from 1 to limit
  Hex,      // hexadecimal, up to limit
  Bytes,    // one or more, that lie in memory from the address before them on
  Word,     // one of the words of the name
  Flag,     // the name itself, given anywhere or not at all
  Text,     // one word, as it stands
  File,
  Rest,  // one or more words, joined by single blanks
};

struct Argument {
  Kind kind = Kind::None;
  // As usage shows it; '|' separates words. Of an address those after the first are taken instead.
  std::string_view name = {};
  std::uint32_t limit = 0;
  std::string_view what = {};  // a number is called so in errors
  bool optional = false;       // and so are all after it
};

constexpr Argument Address(std::string_view name) {
  return {.kind = Kind::Address, .name = name};
}
constexpr Argument Count(std::string_view name, std::uint32_t limit) {
  return {.kind = Kind::Count, .name = name, .limit = limit};
}
constexpr Argument Hex(std::string_view name, std::uint32_t limit, std::string_view what) {
  return {.kind = Kind::Hex, .name = name, .limit = limit, .what = what};
}
constexpr Argument Bytes(std::string_view name) {
  return {.kind = Kind::Bytes, .name = name};
}
constexpr Argument Word(std::string_view words) {
  return {.kind = Kind::Word, .name = words};
}
constexpr Argument Flag(std::string_view name) {
  return {.kind = Kind::Flag, .name = name, .optional = true};
}
constexpr Argument Text(std::string_view name) {
  return {.kind = Kind::Text, .name = name};
}
constexpr Argument File(std::string_view name) {
  return {.kind = Kind::File, .name = name};
}
constexpr Argument Rest(std::string_view name) {
  return {.kind = Kind::Rest, .name = name};
}
constexpr Argument Optional(Argument argument) {
  argument.optional = true;
  return argument;
}

// In their order, flags behind the others, unused ones last. Bytes and Rest end a list.
using ArgumentList = std::array<Argument, 3>;

// "ADDR [COUNT]"
std::string Usage(const ArgumentList& list);

// The values of one command line, by their place in the list.
class ParsedArguments {
 public:
  bool Has(std::size_t n) const { return n < values_.size(); }
  // A word was given in place of an address.
  bool IsWord(std::size_t n) const { return Has(n) && values_[n].index() == 1; }
  // Addresses, counts and hexadecimal numbers; for one that was not given, otherwise.
  std::uint32_t Number(std::size_t n) const { return std::get<std::uint32_t>(values_[n]); }
  std::uint32_t Number(std::size_t n, std::uint32_t otherwise) const {
    return Has(n) ? Number(n) : otherwise;
  }
  bool HasFlag(std::string_view name) const { return flags_.contains(name); }
  // Words, texts and files.
  const std::string& Text(std::size_t n) const { return std::get<std::string>(values_[n]); }
  const std::vector<std::uint8_t>& Bytes(std::size_t n) const {
    return std::get<std::vector<std::uint8_t>>(values_[n]);
  }

  // What was taken where a word could mean several things; one sentence each.
  std::vector<std::string> notes;

  using Value = std::variant<std::uint32_t, std::string, std::vector<std::uint8_t>>;
  void Add(Value value) { values_.push_back(std::move(value)); }
  void AddFlag(std::string_view name) { flags_.insert(name); }

 private:
  std::vector<Value> values_;
  std::set<std::string_view> flags_;
};

// The words' values, or what is wrong with them: "usage: read ADDR [COUNT]" when they are too few
// or too many. Symbols and lines of addresses are those of the debug information, registers those
// of the device.
frontend::Parsed<ParsedArguments> ParseArguments(std::string_view command, const ArgumentList& list,
                                                 std::span<const std::string> words,
                                                 const symbols::DebugInfo& info,
                                                 const devices::Device& device);

}  // namespace brevant::cli
