// SPDX-License-Identifier: MIT
// Numbers as users type them. Rests on the text-to-number rules of base.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "base/address.h"

namespace brevant::frontend {

// A value, or why the text is none: "address 1F000 is beyond FFFF".
template <typename T>
struct Parsed {
  T value{};
  std::string error = {};
  // The text is as it should be, but what it names is not there.
  bool well_formed = false;
  // What was taken, where the text could also mean something else.
  std::string note = {};
  bool ok() const { return error.empty(); }
};

// 1 to 4 hexadecimal digits (more when they are leading zeros), not beyond FFFF.
Parsed<base::Address> ParseAddress(std::string_view word);
// A hexadecimal number not above limit; what names it in the error ("byte", "word", "count").
Parsed<std::uint32_t> ParseHexNumber(std::string_view word, std::uint32_t limit,
                                     std::string_view what);
// A decimal count from 1 to limit.
Parsed<int> ParseCount(std::string_view word, int limit);

}  // namespace brevant::frontend
