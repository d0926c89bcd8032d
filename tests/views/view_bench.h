// SPDX-License-Identifier: MIT
// Views on a simulated board.
#pragma once

#include "control/bench.h"

namespace brevant::views {

using control::ByteList;

class ViewBench : public control::Bench {
 protected:
  // Host bytes sent since the last call.
  std::size_t BytesSent() {
    const std::size_t count = target.board().host_log().size();
    target.board().ClearHostLog();
    return count;
  }
};

}  // namespace brevant::views
