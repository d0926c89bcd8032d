// SPDX-License-Identifier: MIT
#include "views/source_characters.h"

#include <algorithm>
#include <cstdint>

namespace brevant::views {
namespace {

constexpr unsigned kFirstTwoByteLead = 0xC2;  // shorter forms exist for what C0 and C1 begin

unsigned Byte(char c) {
  return static_cast<unsigned char>(c);
}

// Bytes of the character that c begins; 0 when none begins so.
std::size_t LengthFrom(char c) {
  const unsigned lead = Byte(c);
  if (lead < 0x80) return 1;
  if (lead < kFirstTwoByteLead) return 0;
  if (lead < 0xE0) return 2;
  if (lead < 0xF0) return 3;
  return lead < 0xF5 ? 4 : 0;
}

// Forms that are longer than they need be, halves of UTF-16 pairs, and what lies beyond Unicode.
bool BadSecond(unsigned lead, unsigned second) {
  switch (lead) {
    case 0xE0:
      return second < 0xA0;
    case 0xED:
      return second >= 0xA0;
    case 0xF0:
      return second < 0x90;
    case 0xF4:
      return second >= 0x90;
    default:
      return false;
  }
}

bool IsUtf8(std::string_view text) {
  while (!text.empty()) {
    const std::size_t length = LengthFrom(text.front());
    if (length == 0 || length > text.size()) return false;
    if (std::any_of(text.begin() + 1, text.begin() + static_cast<std::ptrdiff_t>(length),
                    BeginsCharacter)) {
      return false;
    }
    if (length > 2 && BadSecond(Byte(text[0]), Byte(text[1]))) return false;
    text.remove_prefix(length);
  }
  return true;
}

}  // namespace

std::string ToUtf8(std::string_view line) {
  if (IsUtf8(line)) return std::string(line);
  std::string utf8;
  for (const char c : line) {
    if (Byte(c) < 0x80) {
      utf8 += c;
    } else {
      utf8 += static_cast<char>(0xC0 | (Byte(c) >> 6));
      utf8 += static_cast<char>(0x80 | (Byte(c) & 0x3F));
    }
  }
  return utf8;
}

std::optional<std::string> ToLatin1(std::string_view utf8) {
  std::string latin1;
  for (std::size_t i = 0; i < utf8.size(); ++i) {
    const unsigned lead = Byte(utf8[i]);
    if (lead < 0x80) {
      latin1 += utf8[i];
    } else if ((lead == 0xC2 || lead == 0xC3) && i + 1 < utf8.size()) {
      latin1 += static_cast<char>(((lead & 0x03) << 6) | (Byte(utf8[++i]) & 0x3F));
    } else {
      return std::nullopt;
    }
  }
  return latin1;
}

std::string_view WholeCharacters(std::string_view utf8) {
  std::size_t tail = utf8.size();
  while (tail > 0 && utf8.size() - tail < 4 && !BeginsCharacter(utf8[tail - 1])) --tail;
  if (tail == 0) return utf8;
  --tail;
  return LengthFrom(utf8[tail]) > utf8.size() - tail ? utf8.substr(0, tail) : utf8;
}

int CharacterCount(std::string_view utf8) {
  return static_cast<int>(std::count_if(utf8.begin(), utf8.end(), BeginsCharacter));
}

bool IsWordCharacter(char c) {
  return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}

std::string WordAround(std::string_view utf8, int column) {
  std::size_t at = 0;
  for (int before = column; at < utf8.size(); ++at) {
    if (BeginsCharacter(utf8[at]) && before-- == 0) break;
  }
  if (column < 0 || at >= utf8.size() || !IsWordCharacter(utf8[at])) return {};
  std::size_t first = at, end = at;
  while (first > 0 && IsWordCharacter(utf8[first - 1])) --first;
  while (end < utf8.size() && IsWordCharacter(utf8[end])) ++end;
  return std::string(utf8.substr(first, end - first));
}

std::string ExpandSourceTabs(std::string_view utf8, int tab_size, int columns) {
  std::string expanded;
  int column = 0;
  for (const char c : utf8) {
    if (BeginsCharacter(c) && column >= columns) break;
    if (c == '\t') {
      const int to = std::min((column / tab_size + 1) * tab_size, columns);
      expanded.append(static_cast<std::size_t>(to - column), ' ');
      column = to;
      continue;
    }
    const bool control = Byte(c) < ' ' || c == '\x7F';
    expanded += control ? ' ' : c;
    if (BeginsCharacter(c)) ++column;
  }
  return expanded;
}

}  // namespace brevant::views
