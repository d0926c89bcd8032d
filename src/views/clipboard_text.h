// SPDX-License-Identifier: MIT
// Target memory as text for the clipboard: a line of four hexadecimal digits for every 16-bit word,
// ended by a carriage return and a line feed.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/address.h"

namespace brevant::views {

// An even number of bytes.
std::string ClipboardText(base::Bytes bytes);

struct ClipboardWords {
  std::vector<std::uint8_t> bytes;  // of the lines before the wrong one, high byte first
  std::optional<long>
      wrong_line;  // the first that is none, counted from 1; what follows is not read
};

// How lines end.
enum class LineEnds {
  TwoCharacters,  // whatever they are, as ClipboardText makes them
  LineFeeds,      // as editors make of them; blanks around the digits do not count
};
// A line may have fewer digits; it is the word of that value.
ClipboardWords ParseClipboardText(std::string_view text, LineEnds ends);

}  // namespace brevant::views
