// SPDX-License-Identifier: MIT
#include "views/source_syntax.h"

#include <algorithm>
#include <array>

#include "base/file_names.h"
#include "views/source_characters.h"

namespace brevant::views {
namespace {

struct LanguageRow {
  std::string_view extension;
  SourceLanguage language;
};
constexpr std::array kLanguages{
    LanguageRow{"c", SourceLanguage::C},           LanguageRow{"h", SourceLanguage::C},
    LanguageRow{"asm", SourceLanguage::Assembler}, LanguageRow{"s", SourceLanguage::Assembler},
    LanguageRow{"src", SourceLanguage::Assembler}, LanguageRow{"inc", SourceLanguage::Assembler},
};

// Of C, and what SDCC and the compilers of its time add.
constexpr std::array<std::string_view, 54> kKeywords{
    "__asm",    "__asm__",  "__at",      "__bit",       "__code",   "__critical", "__data",
    "__endasm", "__far",    "__idata",   "__interrupt", "__naked",  "__near",     "__reentrant",
    "__sbit",   "__using",  "__xdata",   "_Bool",       "asm",      "auto",       "break",
    "case",     "char",     "const",     "continue",    "default",  "do",         "double",
    "else",     "enum",     "extern",    "float",       "for",      "goto",       "if",
    "inline",   "int",      "interrupt", "long",        "register", "restrict",   "return",
    "short",    "signed",   "sizeof",    "static",      "struct",   "switch",     "typedef",
    "union",    "unsigned", "void",      "volatile",    "while"};

using State = SyntaxState;

bool InComment(State state) {
  return state == State::LineComment || state == State::BlockComment || state == State::Star;
}
bool InString(State state) {
  return state >= State::String;
}

State AfterCode(char c, SourceLanguage language) {
  if (c == '"') return State::String;
  if (language == SourceLanguage::Assembler) return c == ';' ? State::LineComment : State::Code;
  if (c == '/') return State::Slash;
  return c == '\'' ? State::Character : State::Code;
}

TextKind KindOfWord(std::string_view word, SourceLanguage language) {
  if (word.front() >= '0' && word.front() <= '9') return TextKind::Number;
  if (language != SourceLanguage::C) return TextKind::Plain;
  const bool known = std::ranges::find(kKeywords, word) != kKeywords.end();
  return known ? TextKind::Keyword : TextKind::Plain;
}

// Of each byte, but for words.
std::vector<TextKind> KindsOfBytes(std::string_view text, SourceLanguage language,
                                   bool begins_in_comment) {
  std::vector<TextKind> kinds(text.size(), TextKind::Plain);
  State state = begins_in_comment ? State::BlockComment : State::Code;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const State before = state;
    state = AfterCharacter(before, text[i], language);
    if (InComment(before) || InComment(state)) {
      kinds[i] = TextKind::Comment;
      if (before == State::Slash) kinds[i - 1] = TextKind::Comment;
    } else if (InString(before) || InString(state)) {
      kinds[i] = TextKind::String;
    }
  }
  return kinds;
}

void ColourWords(std::string_view text, SourceLanguage language, std::vector<TextKind>& kinds) {
  for (std::size_t i = 0; i < text.size();) {
    if (kinds[i] != TextKind::Plain || !IsWordCharacter(text[i])) {
      ++i;
      continue;
    }
    std::size_t end = i;
    while (end < text.size() && IsWordCharacter(text[end])) ++end;
    const TextKind kind = KindOfWord(text.substr(i, end - i), language);
    std::fill(kinds.begin() + static_cast<std::ptrdiff_t>(i),
              kinds.begin() + static_cast<std::ptrdiff_t>(end), kind);
    i = end;
  }
}

// Older assemblers take a line that begins so for a comment.
bool IsStarComment(std::string_view text, SourceLanguage language) {
  return language == SourceLanguage::Assembler && text.starts_with('*');
}

}  // namespace

SourceLanguage LanguageOf(std::string_view path) {
  const std::string extension = base::ExtensionOf(path);
  for (const LanguageRow& row : kLanguages) {
    if (base::EqualIgnoringCase(row.extension, extension)) return row.language;
  }
  return SourceLanguage::Plain;
}

SyntaxState AfterCharacter(SyntaxState state, char c, SourceLanguage language) {
  switch (state) {
    case State::Slash:
      if (c == '/') return State::LineComment;
      if (c == '*') return State::BlockComment;
      return AfterCode(c, language);
    case State::Code:
      return AfterCode(c, language);
    case State::LineComment:
      return c == '\n' ? State::Code : state;
    case State::Star:
      if (c == '/') return State::Code;
      [[fallthrough]];
    case State::BlockComment:
      return c == '*' ? State::Star : State::BlockComment;
    case State::String:
      if (c == '\\') return State::StringEscape;
      return c == '"' || c == '\n' ? State::Code : state;
    case State::Character:
      if (c == '\\') return State::CharacterEscape;
      return c == '\'' || c == '\n' ? State::Code : state;
    case State::StringEscape:
      return c == '\n' ? State::Code : State::String;
    case State::CharacterEscape:
      return c == '\n' ? State::Code : State::Character;
  }
  return state;
}

std::vector<TextSpan> ColourSpans(std::string_view utf8, SourceLanguage language,
                                  bool begins_in_comment) {
  if (language == SourceLanguage::Plain) return {};
  if (IsStarComment(utf8, language)) return {{0, CharacterCount(utf8), TextKind::Comment}};
  std::vector<TextKind> kinds = KindsOfBytes(utf8, language, begins_in_comment);
  ColourWords(utf8, language, kinds);
  std::vector<TextSpan> spans;
  int column = 0;
  TextKind last = TextKind::Plain;
  for (std::size_t i = 0; i < utf8.size(); ++i) {
    if (!BeginsCharacter(utf8[i])) continue;
    if (kinds[i] != TextKind::Plain) {
      if (kinds[i] != last) spans.push_back({column, 0, kinds[i]});
      ++spans.back().count;
    }
    last = kinds[i];
    ++column;
  }
  return spans;
}

}  // namespace brevant::views
