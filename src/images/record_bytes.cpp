// SPDX-License-Identifier: MIT
#include "images/record_bytes.h"

#include "base/text_number.h"

namespace brevant::images {

std::optional<std::uint32_t> HexField(std::string_view text, std::size_t column,
                                      std::size_t digits) {
  if (column > text.size() || text.size() - column < digits) return std::nullopt;
  return base::ParseHexExactly(text.substr(column, digits), static_cast<int>(digits));
}

std::optional<std::vector<std::uint8_t>> HexBytes(std::string_view text, std::size_t column,
                                                  std::size_t count) {
  std::vector<std::uint8_t> bytes;
  bytes.reserve(count);
  for (std::size_t i = 0; i < count; ++i) {
    const auto byte = HexField(text, column + 2 * i, 2);
    if (!byte) return std::nullopt;
    bytes.push_back(static_cast<std::uint8_t>(*byte));
  }
  return bytes;
}

}  // namespace brevant::images
