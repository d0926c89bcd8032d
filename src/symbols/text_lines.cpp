// SPDX-License-Identifier: MIT
#include "symbols/text_lines.h"

#include <algorithm>
#include <charconv>

#include "base/text_number.h"

namespace brevant::symbols {

std::optional<std::string_view> LineReader::Next() {
  if (rest_.empty()) return {};
  std::size_t end = rest_.find('\n');
  const bool has_end = end != std::string_view::npos;
  if (!has_end) end = rest_.size();
  std::string_view line = rest_.substr(0, end);
  if (has_end && line.ends_with('\r')) line.remove_suffix(1);
  if (line.size() > limit_) {
    rest_.remove_prefix(limit_);
    return line.substr(0, limit_);
  }
  rest_.remove_prefix(has_end ? end + 1 : end);
  return line;
}

void LineReader::Skip(int lines) {
  while (lines-- > 0) Next();
}

bool IsSpace(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}
bool IsLetter(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}
bool IsBlank(std::string_view text) {
  return std::ranges::all_of(text, IsSpace);
}
bool IsHexNumber(std::string_view text) {
  return !text.empty() && std::ranges::all_of(text, base::IsHexDigit);
}

char At(std::string_view line, std::size_t column) {
  return column < line.size() ? line[column] : '\n';
}

std::string_view Columns(std::string_view line, std::size_t column, std::size_t count) {
  return column < line.size() ? line.substr(column, count) : std::string_view();
}

std::string_view LabelAt(std::string_view line, std::size_t column) {
  const std::string_view text = Columns(line, column);
  const auto end = std::ranges::find_if(text, [](char c) { return IsSpace(c) || c == ':'; });
  return text.substr(0, static_cast<std::size_t>(end - text.begin()));
}

std::vector<std::string_view> Words(std::string_view text, char separator) {
  std::vector<std::string_view> words;
  const auto parts = [&](char c) { return IsSpace(c) || c == separator; };
  std::size_t at = 0;
  while (at < text.size()) {
    if (parts(text[at])) {
      ++at;
      continue;
    }
    const std::size_t start = at;
    while (at < text.size() && !parts(text[at])) ++at;
    words.push_back(text.substr(start, at - start));
  }
  return words;
}

std::optional<std::uint32_t> LeadingHex(std::string_view text) {
  while (!text.empty() && IsSpace(text.front())) text.remove_prefix(1);
  if ((text.starts_with("0x") || text.starts_with("0X")) && base::IsHexDigit(At(text, 2))) {
    text.remove_prefix(2);
  }
  const auto end = std::ranges::find_if_not(text, base::IsHexDigit);
  const auto digits = static_cast<std::size_t>(end - text.begin());
  if (digits == 0) return {};
  return base::ParseHex(text.substr(0, digits));
}

std::optional<std::uint32_t> LeadingDecimal(std::string_view text) {
  while (!text.empty() && IsSpace(text.front())) text.remove_prefix(1);
  std::uint32_t value = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
  if (result.ec != std::errc()) return {};
  return value;
}

}  // namespace brevant::symbols
