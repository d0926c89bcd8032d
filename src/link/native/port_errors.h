// SPDX-License-Identifier: MIT
// What went wrong with a serial device, in words that tell the user what to do about it.
#pragma once

#include <string>
#include <vector>

#include "link/native/modem_lines.h"
#include "link/port_map.h"

namespace brevant::link {

// Which programs hold the device open, as far as /proc shows it to this user:
// "minicom (process 4711)", joined by commas. Empty when none is seen.
std::string HoldersOf(const std::string& path);

// error_number is the errno of opening the device.
std::string OpenErrorText(const std::string& path, int error_number,
                          const std::vector<SerialDevice>& found);
// The device is held by another program.
std::string BusyText(const std::string& path);
// The device was open and is no longer there.
std::string GoneText(const std::string& path, LineKind kind);
// A setting or a line was refused: what is "the line settings", "RTS" ...
std::string RefusedText(const std::string& path, const std::string& what, int error_number);

}  // namespace brevant::link
