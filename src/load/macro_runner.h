// SPDX-License-Identifier: MIT
// Runs macro files: small scripts that prepare the target by writing memory and setting the PC.
// They run on demand, before a load and after a reset.
#pragma once

#include <string>
#include <string_view>

#include "base/settings_file.h"
#include "base/user_interface.h"
#include "control/register_frame.h"
#include "load/macro_script.h"
#include "load/start_address.h"
#include "memory/memory.h"

namespace brevant::load {

// A name without a folder is taken in the start-up folder; any other stands as it is.
std::string QualifyMacroName(std::string_view name, std::string_view start_up_directory);

class MacroRunner {
 public:
  MacroRunner(memory::Memory& memory, control::RegisterFrame& frame, StartAddress& start,
              base::SettingsFile& settings, base::UserInterface& ui,
              std::string start_up_directory);

  // Runs the file from its first line to its last, or until the user cancels it; nothing is checked
  // after the writes. An empty name becomes brevant.mac in the working folder. False after telling
  // the user when the file can not be read; then nothing has been written.
  bool RunMacroFile(std::string& name);
  // The same on demand: a file that ran is remembered for LastMacroFile.
  bool RunOnDemand(std::string name);
  std::string LastMacroFile() const;
  // What was wrong with the file run last, with its name and line; empty from the second call on
  // and when nothing was. Lines that are no commands are passed over.
  std::string TakeProblem() { return std::exchange(problem_, {}); }
  // The macros of the settings, each when it is enabled.
  void RunBeforeLoadMacro();
  void RunResetMacro();

 private:
  void Carry(const MacroCommand& command);

  memory::Memory& memory_;
  control::RegisterFrame& frame_;
  StartAddress& start_;
  base::SettingsFile& settings_;
  base::UserInterface& ui_;
  std::string start_up_directory_;
  std::string problem_;
};

}  // namespace brevant::load
