// SPDX-License-Identifier: MIT
#include "frontend/typed_numbers.h"

#include <algorithm>
#include <cctype>

#include "base/text_format.h"
#include "base/text_number.h"

namespace brevant::frontend {
namespace {

// A word for a message: long or unprintable input is shown shortened and cleaned.
std::string Shown(std::string_view word) {
  constexpr std::size_t kLongest = 40;
  std::string shown;
  for (const char c : word.substr(0, kLongest)) {
    shown += std::isprint(static_cast<unsigned char>(c)) != 0 ? c : '?';
  }
  if (word.size() > kLongest) shown += "...";
  return shown;
}

}  // namespace

Parsed<base::Address> ParseAddress(std::string_view word) {
  return ParseHexNumber(word, base::kLastAddress, "address");
}

Parsed<std::uint32_t> ParseHexNumber(std::string_view word, std::uint32_t limit,
                                     std::string_view what) {
  Parsed<std::uint32_t> number;
  if (word.empty() || !base::IsHexField(word)) {
    number.error = base::Format("\"%s\" is no %s: hexadecimal digits only, without a prefix",
                                Shown(word), std::string(what));
    return number;
  }
  const std::string_view digits = word.substr(std::min(word.find_first_not_of('0'), word.size()));
  if (digits.size() > 8 || (number.value = base::ParseHex(digits)) > limit) {
    number.value = 0;
    number.error = base::Format("%s %s is beyond %X", std::string(what), Shown(word), limit);
  }
  return number;
}

Parsed<int> ParseCount(std::string_view word, int limit) {
  Parsed<int> count;
  const bool digits = !word.empty() && std::all_of(word.begin(), word.end(),
                                                   [](char c) { return c >= '0' && c <= '9'; });
  const std::string_view significant =
      word.substr(std::min(word.find_first_not_of('0'), word.size()));
  if (digits && !significant.empty() && significant.size() < 10) {
    count.value = base::ParseLeadingDecimal(significant);
  }
  if (count.value < 1 || count.value > limit) {
    count.value = 0;
    count.error =
        base::Format("\"%s\" is no count: a decimal number from 1 to %d", Shown(word), limit);
  }
  return count;
}

}  // namespace brevant::frontend
