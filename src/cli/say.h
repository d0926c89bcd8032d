// SPDX-License-Identifier: MIT
// Text for people, on standard error. Where nobody can read it any more, as when a terminal has
// hung up, it is lost, and what is under way still comes to its end in order.
#pragma once

#include <fmt/format.h>

#include <cstdio>
#include <utility>

namespace brevant::cli {

template <typename... Args>
void Say(fmt::format_string<Args...> format, Args&&... args) {
  std::fputs(fmt::format(format, std::forward<Args>(args)...).c_str(), stderr);
}

}  // namespace brevant::cli
