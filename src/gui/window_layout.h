// SPDX-License-Identifier: MIT
// The places of the frame and its windows on the desktop, taken from and brought into the layout
// that the settings keep.
#pragma once

#include "base/settings_file.h"
#include "workspace/layout.h"

namespace brevant::gui {

class MainWindow;

// As the windows stand now.
workspace::Layout CurrentLayout(const MainWindow& window);
// Moves the frame and opens all windows. With no layout stored yet: the registers above one program
// window.
void RestoreLayout(MainWindow& window, const base::SettingsFile& settings);
// False when the settings file cannot be written.
bool StoreLayout(const MainWindow& window, base::SettingsFile& settings);

}  // namespace brevant::gui
