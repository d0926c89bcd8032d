// SPDX-License-Identifier: MIT
// The places of the frame and its windows on the desktop, taken from and brought into the layout
// that the settings keep.
#pragma once

#include "base/settings_file.h"

class QMdiSubWindow;

namespace brevant::gui {

class MainWindow;
struct WindowKind;

// Moves the frame and opens all windows. With no layout stored yet: the registers above one program
// window.
void RestoreLayout(MainWindow& window, const base::SettingsFile& settings);
// Moves a window that was opened now to where the settings say that its kind was last, if they do.
void ReturnToPlace(QMdiSubWindow& child, const WindowKind& kind,
                   const base::SettingsFile& settings);
// False when the settings file cannot be written.
bool StoreLayout(const MainWindow& window, base::SettingsFile& settings);
// Only what the windows keep beside their places, e.g. where in memory they stand.
bool StoreAttributes(const MainWindow& window, base::SettingsFile& settings);

}  // namespace brevant::gui
