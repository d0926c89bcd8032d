// SPDX-License-Identifier: MIT
// The "Configure" dialog and its four pages. A page stands only while its tab is in front; leaving
// it stores what it shows, and there is no other way to leave.
#pragma once

#include <string>

#include "base/settings_file.h"
#include "base/user_interface.h"
#include "symbols/debug_info.h"

class QWidget;

namespace brevant::gui {

struct ConfigureLinks {
  QWidget* parent;
  base::SettingsFile& settings;
  base::UserInterface& ui;
  symbols::ToolChain& tool_chain;  // in force
  std::string start_up_directory;  // in which macro files without a folder lie
};

// Shown until it is closed. False when something could not be stored; macro files that cannot be
// read do not count, as the user has been told.
bool ShowConfiguration(const ConfigureLinks& links);

// The Introl LIBRARIES directory. False when it could not be stored.
bool AskForIntrolDirectory(QWidget* parent, base::SettingsFile& settings);

}  // namespace brevant::gui
