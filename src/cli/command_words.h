// SPDX-License-Identifier: MIT
// A command line in words.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "frontend/typed_numbers.h"

namespace brevant::cli {

// Words are separated by blanks; "..." keeps blanks in a word; '#' outside quotes starts a comment.
frontend::Parsed<std::vector<std::string>> SplitWords(std::string_view line);

}  // namespace brevant::cli
