// SPDX-License-Identifier: MIT
// Reading the tool chains' text files: lines, columns, words and the numbers in them. Columns count
// from 0; a column past a line's end reads as a line feed, which is white space.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace brevant::symbols {

// Cuts a text into lines. A line ends with a line feed or with the text; a carriage return before
// the line feed belongs to the line end. A line of more than limit characters comes in pieces of
// limit characters, each as if it were a line.
class LineReader {
 public:
  static constexpr std::size_t kNoLimit = static_cast<std::size_t>(-1);
  explicit LineReader(std::string_view text, std::size_t limit = kNoLimit)
      : rest_(text), limit_(limit) {}
  // The next line without its line end; nothing at the end of the text.
  std::optional<std::string_view> Next();
  void Skip(int lines);

 private:
  std::string_view rest_;
  std::size_t limit_;
};

// In the "C" locale.
bool IsSpace(char c);
bool IsLetter(char c);
bool IsBlank(std::string_view text);  // white space only
// One to all characters hexadecimal digits.
bool IsHexNumber(std::string_view text);

char At(std::string_view line, std::size_t column);
// Up to count characters from column on; empty past the line's end.
std::string_view Columns(std::string_view line, std::size_t column,
                         std::size_t count = std::string_view::npos);
// The text from column on up to white space or ':'.
std::string_view LabelAt(std::string_view line, std::size_t column);
// Splits at white space; separator, when given, also splits.
std::vector<std::string_view> Words(std::string_view text, char separator = ' ');

// As "%x": leading white space and a "0x" are skipped, the digits end at the first other character.
// Nothing without a digit; 32 bits, higher digits are lost.
std::optional<std::uint32_t> LeadingHex(std::string_view text);
// Leading decimal digits; nothing without one or above 32 bits.
std::optional<std::uint32_t> LeadingDecimal(std::string_view text);

}  // namespace brevant::symbols
