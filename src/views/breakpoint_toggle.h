// SPDX-License-Identifier: MIT
// What it means to click on a place where a breakpoint is or may be, wherever code is shown. Rests
// on the breakpoint table and its limits.
#pragma once

#include "base/address.h"
#include "base/settings_file.h"
#include "base/user_interface.h"
#include "control/activity.h"
#include "control/breakpoint_table.h"
#include "memory/memory.h"

namespace brevant::views {

enum class Toggled { Added, Removed, Refused };

// Borrowed.
struct BreakpointPlaces {
  const memory::Memory& memory;
  control::BreakpointTable& breakpoints;
  const control::Activity& activity;
  base::SettingsFile& settings;
  base::UserInterface& ui;
};

// Refused with a message where memory cannot hold one and when there are as many as there can be,
// unless the user takes what is offered instead; with a beep while a program runs whose code holds
// the breakpoints.
Toggled ToggleBreakpoint(base::Address address, const BreakpointPlaces& places);

}  // namespace brevant::views
