// SPDX-License-Identifier: MIT
// Finding the serial devices of this computer.
#pragma once

#include <vector>

#include "link/port_map.h"

namespace brevant::link {

// With vendor and serial number where known, by name (ttyUSB2 before ttyUSB10).
std::vector<SerialDevice> FindSerialDevices();

}  // namespace brevant::link
