// SPDX-License-Identifier: MIT
// %-style formatting: user-visible texts stand in tables with their % conversions, so that each is
// one row that can be found by what the user has read.
#pragma once

#include <fmt/printf.h>

#include <string>

namespace brevant::base {

template <typename... Args>
std::string Format(const char* format, const Args&... args) {
  return fmt::sprintf(format, args...);
}

}  // namespace brevant::base
