// SPDX-License-Identifier: MIT
// What the status bar says of the connection.
#pragma once

#include <optional>
#include <string>

#include "base/stop.h"

namespace brevant::gui {

struct ConnectionState {
  std::string port;    // "COM1"
  std::string device;  // behind it; empty when none is open
  bool simulated = false;
  std::string target;  // "MC68HC908GP32"
  bool running = false;
  std::string file_io = {};       // what it has come to so far; empty while it is off
  bool written = false;           // a block of its memory is on its way
  bool breakpoint_waits = false;  // see RunControl::BreakpointChangeWaits
  bool link_lost = false;
  bool security_passed = true;
  long damage = 0;                      // how often the line has altered, lost or added a byte
  std::optional<base::Stop> stop = {};  // the last one, and why
  bool operator==(const ConnectionState&) const = default;
};

// "COM1 simulated MC68HC908GP32: stopped, breakpoint at 8021"; for a lost link what to do about it.
std::string StatusText(const ConnectionState& state);

}  // namespace brevant::gui
