// SPDX-License-Identifier: MIT
// What flash operations share: the modules they build on, and how far one has come.
#pragma once

#include <functional>

#include "base/settings_file.h"
#include "base/user_interface.h"
#include "control/activity.h"
#include "control/register_frame.h"
#include "link/monitor_link.h"
#include "link/security_keeper.h"
#include "memory/memory.h"
#include "symbols/debug_info.h"

namespace brevant::flash {

struct FlashSurroundings {
  memory::Memory& memory;
  link::MonitorLink& link;
  control::RegisterFrame& frame;
  control::Activity& activity;
  symbols::DebugInfo& debug_info;
  base::SettingsFile& settings;
  base::UserInterface& ui;
  link::SecurityKeeper& security;
  // Resets the target and follows up; it also ends what is under way.
  std::function<void()> reset_target;
};

enum class FlashOutcome {
  None,     // nothing was ever started
  Running,  // the timer completes it
  Done,
  VerifyFailed,  // not blank, or an error in programming
  LinkLost,
  Cancelled,  // by the user or by a reset
  Refused,    // nothing was done to the target: a question denied, a bad range, no such file
};

struct FlashStatus {
  FlashOutcome outcome = FlashOutcome::None;
  long bytes_programmed = 0;  // and verified
  long bytes_total = 0;       // known from the start; 0 for erasing
};

}  // namespace brevant::flash
