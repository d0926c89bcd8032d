// SPDX-License-Identifier: MIT
// Keywords, comments, numbers and strings of a source line. What reads the file a character at a
// time and what colours a line share one state machine, so that they agree on where comments end.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace brevant::views {

enum class SourceLanguage { Plain, C, Assembler };
// By its extension.
SourceLanguage LanguageOf(std::string_view path);

enum class SyntaxState : std::uint8_t {
  Code,
  Slash,  // which may begin a comment
  LineComment,
  BlockComment,
  Star,  // which may end it
  String,
  StringEscape,
  Character,
  CharacterEscape,
};
SyntaxState AfterCharacter(SyntaxState state, char c, SourceLanguage language);

enum class TextKind : std::uint8_t { Plain, Keyword, Comment, Number, String };
struct TextSpan {
  int column = 0;  // in characters, as count
  int count = 0;
  TextKind kind = TextKind::Plain;
  bool operator==(const TextSpan&) const = default;
};
// Those of the line that are not plain, from left to right.
std::vector<TextSpan> ColourSpans(std::string_view utf8, SourceLanguage language,
                                  bool begins_in_comment);

}  // namespace brevant::views
