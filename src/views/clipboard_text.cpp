// SPDX-License-Identifier: MIT
#include "views/clipboard_text.h"

#include <algorithm>

#include "base/text_format.h"
#include "base/text_number.h"

namespace brevant::views {
namespace {

constexpr std::size_t kDigits = 4;
constexpr std::size_t kLineEnd = 2;
constexpr std::string_view kBlanks = " \t\r";

// Takes the first line from the text.
std::string_view TakeLine(std::string_view& text, LineEnds ends) {
  const std::size_t length =
      ends == LineEnds::TwoCharacters ? kDigits : std::min(text.find('\n'), text.size());
  const std::size_t end = ends == LineEnds::TwoCharacters ? kLineEnd : 1;
  std::string_view line = text.substr(0, length);
  text.remove_prefix(std::min(length + end, text.size()));
  if (ends == LineEnds::TwoCharacters) return line;
  line.remove_prefix(std::min(line.find_first_not_of(kBlanks), line.size()));
  return line.substr(0, line.find_last_not_of(kBlanks) + 1);
}

}  // namespace

std::string ClipboardText(base::Bytes bytes) {
  std::string text;
  for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
    text += base::Format("%04x\r\n", base::Word(bytes[i], bytes[i + 1]));
  }
  return text;
}

ClipboardWords ParseClipboardText(std::string_view text, LineEnds ends) {
  ClipboardWords words;
  for (long number = 1; !text.empty(); ++number) {
    const std::string_view line = TakeLine(text, ends);
    if (line.empty()) continue;
    const auto word = base::ParseHexExactly(line, kDigits);
    if (!word) {
      words.wrong_line = number;
      break;
    }
    words.bytes.push_back(base::HighByte(*word));
    words.bytes.push_back(base::LowByte(*word));
  }
  return words;
}

}  // namespace brevant::views
