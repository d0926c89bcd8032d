// SPDX-License-Identifier: MIT
#include "gui/status_text.h"

namespace brevant::gui {

std::string StatusText(const ConnectionState& state) {
  if (state.device.empty()) return "not connected: press ReStart";
  std::string text =
      state.port + (state.simulated ? " simulated " : ' ' + state.device + ' ') + state.target;
  if (state.link_lost) {
    text += ": link lost; check cable and power, then press ReStart";
    return text;
  }
  text += state.running ? ": running" : ": stopped";
  if (!state.file_io.empty()) text += ", file I/O: " + state.file_io;
  if (state.running && state.breakpoint_waits) {
    text += " (the breakpoint change counts from the next stop)";
  }
  if (state.written) {
    text += ", its memory is being written";
  } else if (!state.running && state.stop) {
    text += ", " + base::StopText(*state.stop);
  }
  if (state.damage > 0) {
    text += " (line damaged " + std::to_string(state.damage) +
            (state.damage == 1 ? " time)" : " times)");
  }
  if (!state.security_passed) text += " (security not passed, RAM only)";
  return text;
}

}  // namespace brevant::gui
