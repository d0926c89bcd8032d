// SPDX-License-Identifier: MIT
// The serial port as the link sees it. Implemented by the operating system's ports, the simulated
// target and the port router that chooses between them.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "base/address.h"

namespace brevant::base {

// The line settings the link fixes; every other driver field stays as the driver reports it.
// 8 data bits, no parity, one stop bit, no flow control and no null stripping are understood.
struct LineSettings {
  int baud = 9600;
};

class SerialPort {
 public:
  virtual ~SerialPort() = default;

  // Opens the device exclusively. Like desktop systems do, opening raises DTR and RTS.
  virtual bool Open(const std::string& device) = 0;
  virtual void Close() = 0;
  virtual bool Configure(const LineSettings& settings) = 0;
  virtual bool SetQueueSizes(int receive_bytes, int transmit_bytes) = 0;
  virtual bool SetDtr(bool high) = 0;
  virtual bool SetRts(bool high) = 0;
  // Holds (true) or releases (false) the break condition on the transmit line.
  virtual bool SetBreak(bool on) = 0;
  virtual bool Write(Bytes bytes) = 0;
  // Waits until the buffer is full or the time-out has passed; a time-out of zero takes only what
  // has arrived. Returns the number of bytes read (0 is a time-out, not a failure), or nothing when
  // the port is closed or gone.
  virtual std::optional<std::size_t> Read(std::span<std::uint8_t> buffer,
                                          std::chrono::milliseconds timeout) = 0;
  // Why the last call failed and what the user can do about it; empty when it did not fail.
  virtual std::string LastError() const = 0;
};

}  // namespace brevant::base
