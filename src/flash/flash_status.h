// SPDX-License-Identifier: MIT
// What flash operations share: the modules they build on, and how far one has come.
#pragma once

#include "base/settings_file.h"
#include "base/user_interface.h"
#include "base/workspace.h"
#include "control/register_frame.h"
#include "control/run_state.h"
#include "flash/security_bytes.h"
#include "link/monitor.h"
#include "symbols/debug_info.h"

namespace brevant::flash {

// The command that resets the target and follows up; it also ends what RunMode says is under way.
inline constexpr int kResetCommand = 340;

struct FlashSurroundings {
  link::Monitor& monitor;
  control::RegisterFrame& frame;
  control::RunState& state;
  symbols::DebugInfo& debug_info;
  base::SettingsFile& settings;
  base::UserInterface& ui;
  base::Workspace& workspace;
  SecurityBytes& security;
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
