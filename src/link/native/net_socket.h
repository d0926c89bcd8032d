// SPDX-License-Identifier: MIT
// A connection to a serial line somewhere in the network.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

namespace brevant::link {

// "tcp://bench:2000", "rfc2217://[fe80::1]:2000"
struct NetDevice {
  bool sets_line = false;  // RFC 2217; else bytes only
  std::string host;
  std::string port;
};
// The device is one of the network, whether it is written correctly or not.
bool IsNetDevice(std::string_view device);
std::optional<NetDevice> ParseNetDevice(std::string_view device);

struct NetConnection {
  int descriptor = -1;  // the caller's; it does not block, and sends each byte at once
  std::string error;    // why there is none, and what to do about it
};
// Looks the name up and connects; all of it takes no longer than the time-out.
NetConnection ConnectTo(const NetDevice& device, std::chrono::milliseconds timeout);

}  // namespace brevant::link
