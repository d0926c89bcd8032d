// SPDX-License-Identifier: MIT
#include "symbols/sdcc_listing.h"

#include <algorithm>
#include <optional>

#include "symbols/text_lines.h"

namespace brevant::symbols {
namespace {

constexpr std::size_t kAddress = 3;
constexpr std::size_t kCycles = 22;
constexpr std::size_t kNumber = 26;
constexpr std::size_t kNumberEnd = 31;
constexpr std::size_t kText = 32;

struct Comment {
  std::string_view path;
  std::uint32_t line = 0;
};

std::optional<Comment> ParseComment(std::string_view text) {
  if (!text.starts_with(';')) return {};
  text.remove_prefix(1);
  // The path may hold colons: the line number is the first that stands between two of them.
  for (std::size_t colon = text.find(':'); colon != std::string_view::npos;
       colon = text.find(':', colon + 1)) {
    const std::size_t end = text.find_first_not_of("0123456789", colon + 1);
    if (colon == 0 || end == std::string_view::npos || text[end] != ':') continue;
    const auto line = LeadingDecimal(text.substr(colon + 1));
    if (line && *line > 0) return Comment{text.substr(0, colon), *line};
  }
  return {};
}

// "\tG$main$0$0 ==." or "\tFmain$hidden$0$0 ==.": the linker's mark of a function's start.
bool IsFunctionStart(std::string_view text) {
  return (text.starts_with("\tG$") || text.starts_with("\tF")) && text.ends_with(" ==.");
}

// "_main:", but not "00103$:", which counts anew in each function.
std::optional<std::string_view> ParseLabel(std::string_view text) {
  const std::size_t colon = text.find(':');
  const bool named = IsLetter(At(text, 0)) || At(text, 0) == '_';
  if (!named || colon == std::string_view::npos) return {};
  return text.substr(0, colon);
}

}  // namespace

SdccListing ParseSdccListing(std::string_view listing) {
  SdccListing result;
  std::vector<SdccListing::CLine> waiting;  // for the next instruction
  LineReader reader(listing);
  while (const auto line = reader.Next()) {
    if (const auto comment = ParseComment(Columns(*line, kText))) {
      const auto known = std::ranges::find(result.paths, comment->path);
      const auto path = static_cast<std::size_t>(known - result.paths.begin());
      if (known == result.paths.end()) result.paths.emplace_back(comment->path);
      waiting.push_back({0, comment->line, path});
    }
    if (IsFunctionStart(Columns(*line, kText))) waiting.clear();
    const std::string_view digits = Columns(*line, kAddress, 4);
    if (!IsHexNumber(digits)) continue;
    const base::Address address = *LeadingHex(digits);
    if (const auto label = ParseLabel(Columns(*line, kText))) {
      result.labels.try_emplace(std::string(*label), address);
    }
    if (At(*line, kCycles) != '[') continue;
    const auto numbers = Words(Columns(*line, kNumber, kNumberEnd - kNumber));
    const auto number = numbers.empty() ? std::nullopt : LeadingDecimal(numbers[0]);
    result.instructions.try_emplace(address, number.value_or(0));
    for (SdccListing::CLine& c_line : waiting) {
      c_line.address = address;
      result.c_lines.push_back(c_line);
    }
    waiting.clear();
  }
  return result;
}

}  // namespace brevant::symbols
