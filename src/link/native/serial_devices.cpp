// SPDX-License-Identifier: MIT
#include "link/native/serial_devices.h"

#include <QSerialPortInfo>
#include <algorithm>
#include <tuple>

namespace brevant::link {

std::vector<SerialDevice> FindSerialDevices() {
  std::vector<SerialDevice> devices;
  for (const QSerialPortInfo& info : QSerialPortInfo::availablePorts()) {
    devices.push_back({.path = info.systemLocation().toStdString(),
                       .description = info.description().toStdString(),
                       .manufacturer = info.manufacturer().toStdString(),
                       .serial_number = info.serialNumber().toStdString(),
                       .usb = info.hasVendorIdentifier()});
  }
  std::ranges::sort(devices, {}, [](const SerialDevice& device) {
    return std::tuple(device.path.size(), device.path);
  });
  return devices;
}

}  // namespace brevant::link
