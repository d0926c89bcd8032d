// SPDX-License-Identifier: MIT
// The rules of the "Look for hardware" dialog: what it shows, what it refuses, what it stores.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "base/settings_file.h"
#include "base/user_interface.h"
#include "link/monitor.h"

namespace brevant::link {

struct ConnectForm {
  std::array<std::string, 8> code_fields;  // at most 2 characters each, shown with "%02X"
  std::string port;                        // at most 4 characters
  bool verify_security = true;
  std::array<std::string, 5> recent_codes;  // as the "Select" list shows them
  int device = 0;                           // index into DeviceNames()
};

std::vector<std::string> DeviceNames();  // "MC68HC908GP32", "MC68HC908QL"

// The form as the dialog opens with it.
ConnectForm OpenConnectForm(const base::SettingsFile& settings);
// Fills the code fields from entry n of the recent codes.
void SelectRecentCode(ConnectForm& form, const base::SettingsFile& settings, int n);
// "Ok": stores everything and returns nothing, or returns the message to show while the dialog stays
// open. The code list is stored before the port is looked at.
std::optional<base::Message> CommitConnectForm(const ConnectForm& form,
                                               base::SettingsFile& settings);

}  // namespace brevant::link
