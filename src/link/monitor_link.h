// SPDX-License-Identifier: MIT
// The one serial connection to the MCU's ROM monitor. The monitor pin is a single wire, so each
// byte sent comes back twice: the host's own copy and the monitor's echo. Rests on base::SerialPort
// and base::Clock.
//
// Once a transfer has failed, LinkError stays set and every later transfer does nothing, until a
// new connection clears it.
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <utility>

#include "base/address.h"
#include "base/clock.h"
#include "base/serial_port.h"

namespace brevant::link {

enum class PollWait {
  TimeOut,  // a command's poll: waits the read time-out of one byte, 110 ms
  None,     // the timer's poll: takes only what has already arrived
};

class MonitorLink {
 public:
  // secret is called with true before, and with false after a security code passes the port.
  MonitorLink(
      base::SerialPort& port, base::Clock& clock, std::function<void(bool)> secret = [](bool) {})
      : port_(port), clock_(clock), secret_(std::move(secret)) {}
  MonitorLink(const MonitorLink&) = delete;
  MonitorLink& operator=(const MonitorLink&) = delete;

  // The link error latch.
  bool LinkError = false;
  // "COM1" to "COM4", stored by the caller before OpenPort.
  std::string PortName;

  // Opens (closing any open port first), configures, sets the queue sizes. False at the first step
  // that fails; see PortError.
  bool OpenPort(const std::string& name);
  // 9600 8N1 without flow control, 100 ms pause, DTR low, RTS low (which powers the target up),
  // 1000 ms pause.
  bool ConfigurePort();
  void ClosePort();
  bool IsOpen() const { return open_; }
  // Why the port refused, and what to do about it, in the port's own words.
  std::string PortError() const;

  // Echoes that were not what was sent, and bytes that arrived when nobody expected one. Only
  // grows. The latch does not look at it: who is about to claim that an exchange went well does.
  long damage() const { return damage_; }
  // Compares the copies of a sent byte for the count.
  void CountEchoes(std::uint8_t sent, base::Bytes copies);

  // Sends each byte and reads its two copies before the next one goes out. Sets LinkError when they
  // do not arrive in time (120 ms) or when the copies of the last byte differ.
  void SendEchoed(base::Bytes bytes);
  // The same for a security code or a part of it, which whoever keeps a record leaves out.
  void SendSecret(base::Bytes bytes);
  // Reads exactly buffer.size() bytes (at most 64) within 100 ms + 10 ms a byte. When fewer arrive,
  // LinkError is set and the buffer keeps what it held.
  void ReadRaw(std::span<std::uint8_t> buffer);
  // One plain write followed by one read, for the block reads that skip the echo comparison.
  bool WriteRaw(base::Bytes bytes);
  // 0: the monitor's break byte has been seen; kNoByte: nothing came; other values are a non-zero
  // byte, sign-extended.
  static constexpr int kNoByte = 1;
  int PollBreak(PollWait wait = PollWait::TimeOut);
  // Holds the break condition for 100 ms, then expects two bytes: the line's own copy of the break
  // and the stopped monitor's break character. True on success; LinkError is set when the port is
  // gone.
  bool SendBreak();
  // RTS high for 100 ms, then low, then 1000 ms to settle. False when the port refuses; LinkError
  // is set when it is gone.
  bool PulseReset();
  // Why the port did not send the last break or reset pulse, in its own words; empty when it did.
  const std::string& SignalError() const { return signal_error_; }
  // Busy wait: the clock passes at least ms + 1 ticks of a millisecond.
  void WaitMs(int ms);
  // Drops bytes that have arrived unasked (before a new exchange after a reset or reconnect).
  void DiscardInput();
  // The same amid exchanges, where each of them counts as damage.
  void DiscardUnexpected();

 private:
  bool ReadExactly(std::span<std::uint8_t> buffer);
  bool PulseRts();
  bool SignalRefused();

  base::SerialPort& port_;
  base::Clock& clock_;
  std::function<void(bool)> secret_;
  bool open_ = false;
  long damage_ = 0;
  std::string open_error_;
  std::string signal_error_;
};

}  // namespace brevant::link
