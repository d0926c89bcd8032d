// SPDX-License-Identifier: MIT
// What the settings file asks of the engine, as values. Read when it is needed, so that a change
// holds at once and what the command line overrides stays overridden.
#pragma once

#include <optional>
#include <string>

#include "base/settings_file.h"
#include "control/breakpoint_table.h"
#include "control/n_step_form.h"
#include "devices/device.h"
#include "symbols/debug_info.h"

namespace brevant::debugger {

struct EngineSettings {
  const devices::Device& device;
  symbols::ToolChain tool_chain;
  control::BreakMode break_mode;
  control::NStepSettings n_step;
  // Where a C program is to run to after start-up, reset and load; nothing for other tool chains.
  std::optional<std::string> run_to_main;
  std::string symbol_table_start;  // the line of a listing that its symbols follow; may be empty
};

EngineSettings ReadEngineSettings(const base::SettingsFile& settings);

}  // namespace brevant::debugger
