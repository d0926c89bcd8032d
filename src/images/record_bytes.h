// SPDX-License-Identifier: MIT
// The hexadecimal fields of a record, by column.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace brevant::images {

// The digits at column; nothing when the text ends before them or one is no hexadecimal digit.
std::optional<std::uint32_t> HexField(std::string_view text, std::size_t column,
                                      std::size_t digits);
// count bytes of two digits each.
std::optional<std::vector<std::uint8_t>> HexBytes(std::string_view text, std::size_t column,
                                                  std::size_t count);

}  // namespace brevant::images
