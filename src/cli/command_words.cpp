// SPDX-License-Identifier: MIT
#include "cli/command_words.h"

#include <utility>

namespace brevant::cli {
namespace {

bool IsBlank(char c) {
  return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

}  // namespace

frontend::Parsed<std::vector<std::string>> SplitWords(std::string_view line) {
  frontend::Parsed<std::vector<std::string>> words;
  std::size_t i = 0;
  while (i < line.size()) {
    if (IsBlank(line[i])) {
      ++i;
      continue;
    }
    // "#12" is an operand, "# 12" a remark.
    const bool mark_alone = i + 1 == line.size() || IsBlank(line[i + 1]);
    if (line[i] == '#' && (words.value.empty() || mark_alone)) break;
    std::string word;
    bool quoted = false;
    for (; i < line.size() && (quoted || !IsBlank(line[i])); ++i) {
      if (line[i] == '"') {
        quoted = !quoted;
      } else {
        word += line[i];
      }
    }
    if (quoted) {
      words.error = "a quotation mark is missing its partner";
      return words;
    }
    words.value.push_back(std::move(word));
  }
  return words;
}

}  // namespace brevant::cli
