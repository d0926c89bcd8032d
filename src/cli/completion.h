// SPDX-License-Identifier: MIT
// What the word at the end of an unfinished command line can become.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace brevant::cli {

struct Completion {
  std::string insert;                   // what all candidates have in common, behind what is typed
  std::vector<std::string> candidates;  // shown when there is nothing to insert
};

// Command names for the first word; file names behind a command that takes a file.
Completion Complete(std::string_view line);

}  // namespace brevant::cli
