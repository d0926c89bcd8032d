// SPDX-License-Identifier: MIT
// The characters of source lines: files are UTF-8 or Latin-1, and a column is a character.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace brevant::views {

// The line as UTF-8: what is not valid as such is taken for Latin-1.
std::string ToUtf8(std::string_view line);
// Nothing when the text has characters that Latin-1 has not.
std::optional<std::string> ToLatin1(std::string_view utf8);
// Without the first bytes of a character whose last ones were cut off.
std::string_view WholeCharacters(std::string_view utf8);

// True for the first byte of a character.
constexpr bool BeginsCharacter(char c) {
  return (static_cast<unsigned char>(c) & 0xC0) != 0x80;
}
int CharacterCount(std::string_view utf8);

// Of names and numbers of C.
bool IsWordCharacter(char c);
// The word that covers the column; empty when none does.
std::string WordAround(std::string_view utf8, int column);

// The text up to so many columns. A tab goes on to the next multiple of tab_size; any other control
// character takes a column and shows nothing.
std::string ExpandSourceTabs(std::string_view utf8, int tab_size, int columns);

}  // namespace brevant::views
