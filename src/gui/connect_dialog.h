// SPDX-License-Identifier: MIT
// The "Look for hardware" dialog: device, port and what stands behind it, security code. The form
// of the link decides what is accepted and stored.
#pragma once

#include <string>
#include <vector>

#include "base/settings_file.h"
#include "base/user_interface.h"
#include "link/port_map.h"
#include "link/security_keeper.h"

class QWidget;

namespace brevant::gui {

enum class Leaving {
  ByOk,       // the only button
  ByQuitToo,  // after an attempt that has failed
};

// True once "Ok" has been accepted and the settings are stored. False when the user or the window
// system closed the dialog.
bool AskForConnection(QWidget* parent, base::SettingsFile& settings, link::SecurityKeeper& security,
                      base::UserInterface& ui, const std::vector<link::SerialDevice>& found,
                      const std::string& version, Leaving leaving = Leaving::ByOk);

}  // namespace brevant::gui
