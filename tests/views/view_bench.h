// SPDX-License-Identifier: MIT
// Views on a simulated board.
#pragma once

#include "control/bench.h"
#include "views/open_views.h"

namespace brevant::views {

using control::ByteList;

class ViewBench : public control::Bench {
 protected:
  OpenViews open;

  // As after a command: every view follows.
  void Follow(long of_settings = 0) {
    open.Follow({.memory = memory.generation(),
                 .registers = frame.generation(),
                 .marks = breakpoints.generation(),
                 .stops = run.stops(),
                 .settings = of_settings + activity.file_io_changes(),
                 .symbols = debug_info.SymbolTable.generation()},
                !activity.WaitingForBreak() && !link.LinkError);
  }
  // Host bytes sent since the last call.
  std::size_t BytesSent() {
    const std::size_t count = target.board().host_log().size();
    target.board().ClearHostLog();
    return count;
  }
};

}  // namespace brevant::views
