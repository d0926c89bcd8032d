// SPDX-License-Identifier: MIT
#include "link/port_map.h"

#include <algorithm>
#include <filesystem>
#include <utility>

namespace brevant::link {

namespace {

using base::keys::kPortDevice;

// What stands behind a device that is no file of the system.
constexpr std::pair<std::string_view, std::string_view> kSchemes[] = {
    {kTcpScheme, "over the network, without reset and break"},
    {kRfc2217Scheme, "over the network"},
    {kReplayScheme, "a recording played back (no hardware needed)"},
};

const SerialDevice* FindDevice(const std::vector<SerialDevice>& found, std::string_view path) {
  const auto it = std::ranges::find(found, path, &SerialDevice::path);
  return it == found.end() ? nullptr : &*it;
}

// "a, b" of the parts that say something.
std::string JoinParts(std::string_view first, std::string_view second) {
  std::string text(first);
  if (!first.empty() && !second.empty()) text += ", ";
  return text.append(second);
}

int NumberOf(std::string_view port) {
  return port.back() - '0';
}

}  // namespace

bool IsLogicalPort(std::string_view name) {
  return name.size() == 4 && name.starts_with("COM") && name[3] >= '1' && name[3] <= '4';
}

std::optional<std::string> DeviceBehind(std::string_view port, const base::SettingsFile& settings,
                                        const std::vector<SerialDevice>& found) {
  if (!IsLogicalPort(port)) return std::nullopt;
  std::string entry = settings.String(kPortDevice, NumberOf(port));
  if (!entry.empty()) return entry;
  if (port != "COM1") return std::nullopt;
  const auto adapter = std::ranges::find(found, true, &SerialDevice::usb);
  return adapter != found.end() ? adapter->path : std::string(kSimulator);
}

bool StoreDeviceBehind(std::string_view port, std::string_view device,
                       base::SettingsFile::Change& change) {
  if (!IsLogicalPort(port)) return false;
  change.Store(kPortDevice, device, NumberOf(port));
  return true;
}

std::string DescribeDevice(std::string_view device, const std::vector<SerialDevice>& found) {
  if (device == kSimulator) return "simulated target (no hardware needed)";
  for (const auto& [scheme, what] : kSchemes) {
    if (device.starts_with(scheme)) return std::string(device) + " - " + std::string(what);
  }
  const SerialDevice* known = FindDevice(found, device);
  if (known == nullptr) {
    // Pseudo-terminals and the like are no adapters that could be listed.
    std::error_code ignored;
    const bool there = std::filesystem::is_character_file(std::string(device), ignored);
    return std::string(device) + (there ? "" : " - not found at present");
  }
  std::string text = known->path;
  if (!known->description.empty()) text += " - " + known->description;
  const std::string serial =
      known->serial_number.empty() ? "" : "serial number " + known->serial_number;
  const std::string maker = JoinParts(known->manufacturer, serial);
  if (!maker.empty()) text += " (" + maker + ")";
  return text;
}

std::string DeviceOfText(std::string_view text, const std::vector<DeviceChoice>& choices) {
  const auto listed = std::ranges::find(choices, text, &DeviceChoice::text);
  if (listed != choices.end()) return listed->device;
  text.remove_prefix(std::min(text.find_first_not_of(" \t"), text.size()));
  return std::string(text.substr(0, text.find_last_not_of(" \t\r\n") + 1));
}

std::vector<DeviceChoice> ListDeviceChoices(const std::vector<SerialDevice>& found,
                                            std::string_view current) {
  std::vector<DeviceChoice> choices;
  const auto add = [&](std::string_view device) {
    choices.push_back({std::string(device), DescribeDevice(device, found)});
  };
  for (const bool usb : {true, false}) {
    for (const SerialDevice& device : found) {
      if (device.usb == usb) add(device.path);
    }
  }
  add(kSimulator);
  if (!current.empty() &&
      std::ranges::find(choices, current, &DeviceChoice::device) == choices.end()) {
    add(current);
  }
  return choices;
}

}  // namespace brevant::link
