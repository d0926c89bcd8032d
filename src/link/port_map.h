// SPDX-License-Identifier: MIT
// Which device stands behind each logical port COM1 to COM4 (section "ports" of the settings).
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/settings_file.h"

namespace brevant::link {

// The device name of the simulated target in settings and on command lines.
inline constexpr std::string_view kSimulator = "simulator";

struct SerialDevice {
  std::string path;           // "/dev/ttyUSB0"
  std::string description;    // "FT232R USB UART"
  std::string manufacturer;
  std::string serial_number;
  bool usb = false;
};

bool IsLogicalPort(std::string_view name);  // exactly "COM1" to "COM4"

// The device behind a logical port: the settings' entry, else for COM1 the first USB adapter of
// found, else the simulated target. Nothing for COM2 to COM4 without an entry.
std::optional<std::string> DeviceBehind(std::string_view port, const base::SettingsFile& settings,
                                        const std::vector<SerialDevice>& found);
void StoreDeviceBehind(std::string_view port, std::string_view device,
                       base::SettingsFile& settings);

}  // namespace brevant::link
