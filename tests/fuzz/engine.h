// SPDX-License-Identifier: MIT
// The whole engine on a port, for fuzz targets.
#pragma once

#include <string>

#include "base/event_log.h"
#include "base/test_user.h"
#include "debugger/debugger.h"

namespace brevant {

// Nothing is kept between two of them.
struct Engine {
  Engine(base::SerialPort& port, base::Clock& clock)
      : debugger({.port = port,
                  .clock = clock,
                  .settings = settings,
                  .ui = user,
                  .events = events,
                  .start_up_directory = "/"}) {}

  // No folder of that name: reads as all defaults, and nothing is stored.
  base::SettingsFile settings{"/nonexistent/brevant.ini"};
  base::TestUser user;
  base::EventLog events;
  debugger::Debugger debugger;
};

}  // namespace brevant
