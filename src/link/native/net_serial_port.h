// SPDX-License-Identifier: MIT
// A serial line behind a server in the network: "rfc2217://HOST:PORT" with everything that a serial
// port has, "tcp://HOST:PORT" with its bytes alone. Rests on TelnetSerial and a socket.
//
// Line settings, a break and RTS high count as done when the server has said so. What "tcp://"
// cannot do fails, with what to do instead.
#pragma once

#include <cstdint>
#include <deque>
#include <optional>
#include <string>

#include "base/serial_port.h"
#include "link/native/net_socket.h"
#include "link/native/telnet_serial.h"
#include "link/port_router.h"

namespace brevant::link {

class NetSerialPort final : public base::SerialPort {
 public:
  NetSerialPort() = default;
  NetSerialPort(const NetSerialPort&) = delete;
  NetSerialPort& operator=(const NetSerialPort&) = delete;
  ~NetSerialPort() override { Close(); }

  // Takes 5 seconds at most where nobody answers, and 2 more where nobody speaks RFC 2217.
  bool Open(const std::string& device) override;
  void Close() override;
  bool Configure(const base::LineSettings& settings) override;
  bool SetQueueSizes(int receive_bytes, int transmit_bytes) override;
  bool SetDtr(bool high) override;
  bool SetRts(bool high) override;
  bool SetBreak(bool on) override;
  // The bytes have been handed to the system, which sends them at once.
  bool Write(base::Bytes bytes) override;
  // A time-out other than zero is half a second longer than asked for: the network's part.
  std::optional<std::size_t> Read(std::span<std::uint8_t> buffer,
                                  std::chrono::milliseconds timeout) override;
  std::string LastError() const override { return error_; }

 private:
  using Deadline = std::chrono::steady_clock::time_point;

  bool Fail(std::string text);
  bool CheckOpen();
  bool Lose(const std::string& what);
  bool Send(base::Bytes bytes);
  // Takes in some of what has arrived, waiting for it until the deadline. False when the connection
  // is gone.
  bool Receive(Deadline deadline);
  bool Agree();
  // Sends the command and looks what the server has made of it.
  bool Set(LineCommand command, const TelnetSerial::Data& value, const std::string& what);
  bool Control(LineControl control, const std::string& what);
  bool CannotOverTcp(const std::string& what);

  int descriptor_ = -1;
  std::string device_;
  bool sets_line_ = false;
  bool rts_switched_ = false;  // high, and the server has said so
  TelnetSerial telnet_;
  std::deque<std::uint8_t> arrived_;  // of the line
  std::string error_;
  bool gone_ = false;  // error_ says why, until the next Open
};

// A closed port and the computer's clock.
PortBackend MakeNetBackend();

}  // namespace brevant::link
