// SPDX-License-Identifier: MIT
// The operating system's serial ports, on QtSerialPort. This header names no Qt type.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "base/clock.h"
#include "base/serial_port.h"
#include "link/port_map.h"
#include "link/port_router.h"

namespace brevant::link {

// The serial devices of this computer, with vendor and serial number where known.
std::vector<SerialDevice> FindSerialDevices();

// A closed port and the computer's clock.
PortBackend MakeNativeBackend();

}  // namespace brevant::link
