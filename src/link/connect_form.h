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
#include "link/port_map.h"
#include "link/security_keeper.h"

namespace brevant::link {

inline constexpr int kCodeFieldLimit = 2;  // characters that can be typed
inline constexpr int kPortFieldLimit = 4;

// What stands behind one of COM1 to COM4.
struct PortChoice {
  std::string device;   // empty when nothing does
  bool chosen = false;  // by the user, in this dialog; only then it is stored
};

struct ConnectForm {
  std::array<std::string, 8> code_fields;  // shown with "%02X"
  // A longer text of the settings is shown whole, so that "COM10" is refused instead of becoming
  // another port.
  std::string port;
  bool verify_security = true;
  std::array<std::string, kRecentCodes> recent_codes;  // as the "Select" list shows them
  int device = 0;                                      // a device's settings number
  std::array<PortChoice, kLogicalPorts> ports;         // 0 is COM1

  // The choice for a port as typed ("com2"); nullptr when there is no such port.
  PortChoice* FindPort(std::string_view name);
};

// The form as the dialog opens with it.
ConnectForm OpenConnectForm(const base::SettingsFile& settings, const SecurityKeeper& security,
                            const std::vector<SerialDevice>& found = {});
// Fills the code fields from 16 hexadecimal digits with anything that is no letter or digit between
// them. False, and nothing is changed, for other text.
bool PasteCode(ConnectForm& form, std::string_view text);
// Fills the code fields from entry n of the recent codes, each byte C3 when it does not parse.
void SelectRecentCode(ConnectForm& form, const SecurityKeeper& security, int n);
// "Ok": stores everything and returns nothing, or returns the message to show while the dialog
// stays open. The code list is stored before the port is looked at, all the rest together. A
// settings file that cannot be written is in the way only of choices that it does not hold already.
std::optional<base::Message> CommitConnectForm(const ConnectForm& form,
                                               base::SettingsFile& settings,
                                               SecurityKeeper& security);

}  // namespace brevant::link
