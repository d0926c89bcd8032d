// SPDX-License-Identifier: MIT
// The rules by which text becomes a number and back: shared by every field, file and command that
// takes an address or a value.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace brevant::base {

bool IsHexDigit(char c);
// -1 for a character that is no hexadecimal digit.
int HexDigitValue(char c);

// True when every character is a hexadecimal digit. An empty text passes (it reads as 0).
bool IsHexField(std::string_view text);
// value * 16 + digit in 32 bits, letters in either case; other characters are skipped.
std::uint32_t ParseHex(std::string_view text);
// The number of a text of 1 to max_digits hexadecimal digits and nothing else.
std::optional<std::uint32_t> ParseHexExactly(std::string_view text, int max_digits);

// True when no character is above '1'.
bool IsBinaryField(std::string_view text);
// value * 2 + (character - '0').
std::uint32_t ParseBinary(std::string_view text);
// Bits count-1 .. 0 of value as '1' and '0'.
std::string FormatBinary(std::uint32_t value, int count);

// Leading decimal digits after optional blanks and a sign; 0 when there are none. Saturates at the
// limits of int. The rule of "%d" fields.
int ParseLeadingDecimal(std::string_view text);

// One "%Nx" conversion: skips white space, then takes 1 to max_digits hexadecimal digits from the
// front of text and removes them. Nothing when there is no digit.
std::optional<std::uint32_t> ScanHex(std::string_view& text, int max_digits);

}  // namespace brevant::base
