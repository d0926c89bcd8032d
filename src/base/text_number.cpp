// SPDX-License-Identifier: MIT
#include "base/text_number.h"

#include <algorithm>
#include <limits>

namespace brevant::base {
namespace {

bool IsBlank(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}

void SkipBlanks(std::string_view& text) {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
}

}  // namespace

int HexDigitValue(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

bool IsHexDigit(char c) {
  return HexDigitValue(c) >= 0;
}

bool IsHexField(std::string_view text) {
  return std::all_of(text.begin(), text.end(), IsHexDigit);
}

std::uint32_t ParseHex(std::string_view text) {
  std::uint32_t value = 0;
  for (char c : text) {
    if (IsHexDigit(c)) value = value * 16 + static_cast<std::uint32_t>(HexDigitValue(c));
  }
  return value;
}

std::optional<std::uint32_t> ParseHexExactly(std::string_view text, int max_digits) {
  if (text.empty() || text.size() > static_cast<std::size_t>(max_digits) || !IsHexField(text)) {
    return std::nullopt;
  }
  return ParseHex(text);
}

bool IsBinaryField(std::string_view text) {
  return std::all_of(text.begin(), text.end(),
                     [](char c) { return static_cast<unsigned char>(c) <= '1'; });
}

std::uint32_t ParseBinary(std::string_view text) {
  std::uint32_t value = 0;
  for (char c : text) {
    value = value * 2 + (static_cast<std::uint32_t>(static_cast<unsigned char>(c)) - '0');
  }
  return value;
}

std::string FormatBinary(std::uint32_t value, int count) {
  std::string text;
  for (int bit = count - 1; bit >= 0; --bit) text += (value >> bit & 1u) != 0 ? '1' : '0';
  return text;
}

int ParseLeadingDecimal(std::string_view text) {
  SkipBlanks(text);
  const bool negative = text.starts_with('-');
  if (negative || text.starts_with('+')) text.remove_prefix(1);
  // One past the limit is enough for both signs and keeps the product inside 64 bits.
  constexpr std::int64_t kLimit = std::int64_t{std::numeric_limits<int>::max()} + 1;
  std::int64_t value = 0;
  for (char c : text) {
    if (c < '0' || c > '9') break;
    value = std::min(value * 10 + (c - '0'), kLimit);
  }
  return static_cast<int>(negative ? -value : std::min(value, kLimit - 1));
}

std::optional<std::uint32_t> ScanHex(std::string_view& text, int max_digits) {
  SkipBlanks(text);
  const auto end = std::find_if_not(
      text.begin(), text.begin() + std::min<std::ptrdiff_t>(std::ssize(text), max_digits),
      IsHexDigit);
  const auto count = static_cast<std::size_t>(end - text.begin());
  if (count == 0) return std::nullopt;
  const std::uint32_t value = ParseHex(text.substr(0, count));
  text.remove_prefix(count);
  return value;
}

}  // namespace brevant::base
