// SPDX-License-Identifier: MIT
// One session with a board: what is done in it and what goes wrong meanwhile follows from its seed.
// Whatever the engine claims is compared with the board.
#pragma once

#include <string>
#include <vector>

namespace brevant::campaign {

struct SessionReport {
  std::string faults;
  std::vector<std::string> violations;
  int claims = 0;            // that were compared with the board
  long long longest_ms = 0;  // that one act has taken, in the target's time
};

// verbose prints what is done and said. The folder is the session's own for as long as it lasts.
SessionReport RunSession(unsigned seed, const std::string& folder, bool verbose);

}  // namespace brevant::campaign
