// SPDX-License-Identifier: MIT
// What a user may do in a session, one row each: does it, and compares what is claimed of it with
// the board.
#pragma once

#include <span>
#include <string_view>

#include "campaign/bench.h"

namespace brevant::campaign {

struct Act {
  std::string_view name;
  void (*perform)(Bench& bench);
};
extern const std::span<const Act> kActs;

}  // namespace brevant::campaign
