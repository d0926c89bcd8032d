// SPDX-License-Identifier: MIT
// The page of the configuration dialog that names the two automatic macros.
#pragma once

#include <string>
#include <string_view>

#include "base/settings_file.h"
#include "base/user_interface.h"

namespace brevant::load {

// Bits of setting "FileLMacroFlag".
inline constexpr int kMacroBeforeLoad = 1;
inline constexpr int kMacroAfterReset = 2;

struct MacroPage {
  static constexpr std::string_view kTemplate = "PGMACROFILE";
  static constexpr std::string_view kCaption = "Get Macro file name";
  static constexpr std::string_view kBeforeLoadLabel = "Macro file name before loading file";
  static constexpr std::string_view kAfterResetLabel = "Macro file name after reset";
  static constexpr std::size_t kMaxNameLength = 255;

  bool before_load = false;
  std::string before_load_file;
  bool after_reset = false;
  std::string after_reset_file;

  static MacroPage Open(const base::SettingsFile& settings);
  // Stores the check boxes, then each checked file that can be read. False after telling the user
  // about the first that can not; what comes after it is not stored.
  bool Commit(base::SettingsFile& settings, base::UserInterface& ui,
              std::string_view start_up_directory) const;
};

}  // namespace brevant::load
