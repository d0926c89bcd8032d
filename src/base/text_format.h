// SPDX-License-Identifier: MIT
// %-style formatting. The system's texts are kept with their % conversions, word for word.
#pragma once

#include <fmt/printf.h>

#include <string>

namespace brevant::base {

template <typename... Args>
std::string Format(const char* format, const Args&... args) {
  return fmt::sprintf(format, args...);
}

}  // namespace brevant::base
