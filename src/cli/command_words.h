// SPDX-License-Identifier: MIT
// A command line in words, and the words as numbers.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/address.h"

namespace brevant::cli {

// A value, or why the text is none: "address 1F000 is beyond FFFF".
template <typename T>
struct Parsed {
  T value{};
  std::string error;
  bool ok() const { return error.empty(); }
};

// Words are separated by blanks; "..." keeps blanks in a word; '#' outside quotes starts a comment.
Parsed<std::vector<std::string>> SplitWords(std::string_view line);

// 1 to 4 hexadecimal digits (more when they are leading zeros), not beyond FFFF.
Parsed<base::Address> ParseAddress(std::string_view word);
// A hexadecimal number not above limit; what names it in the error ("byte", "word", "count").
Parsed<std::uint32_t> ParseHexNumber(std::string_view word, std::uint32_t limit,
                                     std::string_view what);
// A decimal count from 1 to limit.
Parsed<int> ParseCount(std::string_view word, int limit);

}  // namespace brevant::cli
