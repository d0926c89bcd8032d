// SPDX-License-Identifier: MIT
// The pages of the guide (docs/guide), as they were when the program was built.
#pragma once

#include <span>
#include <string_view>

namespace brevant::guide {

struct Page {
  std::string_view file;  // "step.md"
  std::string_view text;  // Markdown, with the comment that says what it explains
};

// By file name.
std::span<const Page> Pages();

}  // namespace brevant::guide
