// SPDX-License-Identifier: MIT
#include "views/aligned_line.h"

#include <algorithm>

#include "views/program_view.h"

namespace brevant::views {
namespace {

constexpr std::size_t kCharactersAByte = 3;  // a blank and two digits
constexpr std::size_t kLabelColumn = 20;     // behind four bytes
constexpr std::size_t kLabelCharacters = 16;
constexpr std::size_t kMnemonicColumn = kLabelColumn + kLabelCharacters + 1;
constexpr std::size_t kOperandColumn = kMnemonicColumn + 7;
constexpr std::string_view kCut = "..";

std::string Label(std::string_view label) {
  if (label.size() <= kLabelCharacters) return std::string(label);
  return std::string(label.substr(0, kLabelCharacters - kCut.size())).append(kCut);
}

void Pad(std::string& text, std::size_t column) {
  text.resize(std::max(text.size() + 1, column), ' ');
}

}  // namespace

std::string AlignedText(std::string_view line, int bytes) {
  const std::size_t header = kAddressColumns + kCharactersAByte * static_cast<std::size_t>(bytes);
  if (bytes == 0 || line.size() < header) return ExpandTabs(line);
  std::string text(line.substr(0, header));
  std::string_view rest = line.substr(header);
  rest.remove_prefix(std::min(rest.find_first_not_of(' '), rest.size()));
  Pad(text, kLabelColumn);
  if (!rest.starts_with('\t')) {
    const std::size_t end = std::min(rest.find(':'), rest.size());
    text += Label(rest.substr(0, end));
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
  rest.remove_prefix(std::min<std::size_t>(rest.size(), 1));  // the tab or blank behind a label
  text.resize(kMnemonicColumn, ' ');
  const std::size_t tab = std::min(rest.find('\t'), rest.size());
  text += rest.substr(0, tab);
  rest.remove_prefix(std::min(tab + 1, rest.size()));
  if (!rest.empty()) {
    Pad(text, kOperandColumn);
    for (const char c : rest) text += c == '\t' ? ' ' : c;
  }
  return text;
}

}  // namespace brevant::views
