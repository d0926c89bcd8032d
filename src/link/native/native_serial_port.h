// SPDX-License-Identifier: MIT
// The operating system's serial ports. This header names no Qt type.
//
// The link exchanges single bytes, thousands a second of target time, so each byte's way through
// the host counts. The port therefore talks to the terminal driver itself: no buffer of its own, no
// event loop, no QCoreApplication, and only those driver fields are touched that the link fixes.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "base/serial_port.h"
#include "link/native/modem_lines.h"
#include "link/native/serial_devices.h"
#include "link/port_router.h"

namespace brevant::link {

class NativeSerialPort final : public base::SerialPort {
 public:
  NativeSerialPort() = default;
  NativeSerialPort(const NativeSerialPort&) = delete;
  NativeSerialPort& operator=(const NativeSerialPort&) = delete;
  ~NativeSerialPort() override { Close(); }

  // A path ("/dev/ttyUSB0", "/dev/pts/3") or a name under /dev ("ttyUSB0"). Exclusive: a second
  // opening fails, in this program too.
  bool Open(const std::string& device) override;
  void Close() override;
  bool Configure(const base::LineSettings& settings) override;
  // The driver's queues have a size of their own, 4096 bytes each way: true up to that.
  bool SetQueueSizes(int receive_bytes, int transmit_bytes) override;
  bool SetDtr(bool high) override;
  bool SetRts(bool high) override;
  bool SetBreak(bool on) override;
  // The bytes are in the driver's hands when it returns. Gives up after 100 ms + 10 ms a byte.
  bool Write(base::Bytes bytes) override;
  // A device that is gone is closed at once, so that its name is free when it comes back.
  std::optional<std::size_t> Read(std::span<std::uint8_t> buffer,
                                  std::chrono::milliseconds timeout) override;
  std::string LastError() const override { return error_; }

 private:
  enum class Arrived { Bytes, Nothing, Failed };

  bool Claim();
  void AskForLowLatency() const;
  Arrived ReadOnce(std::span<std::uint8_t> buffer, std::size_t& count);
  bool Line(bool (ModemLines::*set)(bool) const, bool high, const char* what);
  bool Fail(std::string text);
  bool CheckOpen();
  void LoseDevice();

  int descriptor_ = -1;
  std::string path_;
  std::optional<ModemLines> lines_;
  std::string error_;
  bool gone_ = false;  // error_ says why, until the next Open
};

// A closed port and the computer's clock.
PortBackend MakeNativeBackend();

}  // namespace brevant::link
