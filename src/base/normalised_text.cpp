// SPDX-License-Identifier: MIT
#include "base/normalised_text.h"

#include <algorithm>

namespace brevant::base {

std::string NormaliseText(std::string_view text) {
  constexpr std::string_view kSeparators = " \t\n\v\f\r,";
  std::string result;
  for (const char c : text.substr(0, text.find(';'))) {
    const bool separator = kSeparators.find(c) != std::string_view::npos;
    if (separator && (result.empty() || result.back() == ' ')) continue;
    result += separator ? ' ' : c;
  }
  if (!result.empty() && result.back() == ' ') result.pop_back();
  return result;
}

std::vector<std::string_view> SplitWords(std::string_view normalised) {
  std::vector<std::string_view> words;
  while (!normalised.empty()) {
    const std::size_t end = std::min(normalised.find(' '), normalised.size());
    words.push_back(normalised.substr(0, end));
    normalised.remove_prefix(std::min(end + 1, normalised.size()));
  }
  return words;
}

}  // namespace brevant::base
