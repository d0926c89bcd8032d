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
inline constexpr int kLogicalPorts = 4;
// "replay:FILE" is a recording played back.
inline constexpr std::string_view kReplayScheme = "replay:";
// "tcp://HOST:PORT" carries the bytes of a line elsewhere, "rfc2217://HOST:PORT" all of it.
inline constexpr std::string_view kTcpScheme = "tcp://";
inline constexpr std::string_view kRfc2217Scheme = "rfc2217://";

struct SerialDevice {
  std::string path;         // "/dev/ttyUSB0"
  std::string description;  // "FT232R USB UART"
  std::string manufacturer;
  std::string serial_number;
  bool usb = false;
};

bool IsLogicalPort(std::string_view name);  // exactly "COM1" to "COM4"

// The device behind a logical port: the settings' entry, else for COM1 the first USB adapter of
// found, else the simulated target. Nothing for COM2 to COM4 without an entry, and for other names.
std::optional<std::string> DeviceBehind(std::string_view port, const base::SettingsFile& settings,
                                        const std::vector<SerialDevice>& found);
// An empty device removes the choice. False when port is no logical port.
bool StoreDeviceBehind(std::string_view port, std::string_view device,
                       base::SettingsFile::Change& change);

// One line of the list from which the device behind a port is chosen.
struct DeviceChoice {
  std::string device;  // as stored
  std::string text;    // as shown
};

// "/dev/ttyUSB0 - FT232R USB UART (FTDI, serial number A50285BI)"; for the simulated target a text
// with the word "simulated".
std::string DescribeDevice(std::string_view device, const std::vector<SerialDevice>& found);
// The USB adapters found, the other devices, the simulated target; and current, if it is none of
// these, marked as not found.
std::vector<DeviceChoice> ListDeviceChoices(const std::vector<SerialDevice>& found,
                                            std::string_view current = {});

// What a user has typed, pasted or chosen in that list: the device of one of its lines, else the
// text itself without the blanks around it.
std::string DeviceOfText(std::string_view text, const std::vector<DeviceChoice>& choices);

}  // namespace brevant::link
