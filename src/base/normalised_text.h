// SPDX-License-Identifier: MIT
// The form in which macro lines and typed data are read.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace brevant::base {

// Without a comment (from the first ';' on), commas taken as spaces, words separated by one space,
// none at either end.
std::string NormaliseText(std::string_view text);
// The words of a normalised text.
std::vector<std::string_view> SplitWords(std::string_view normalised);

}  // namespace brevant::base
