// SPDX-License-Identifier: MIT
#include "link/native/net_serial_port.h"

#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <utility>

#include "link/native/descriptor_wait.h"
#include "link/system_clock.h"

namespace brevant::link {
namespace {

using SteadyClock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr milliseconds kConnectTime{5000};
constexpr milliseconds kAnswerTime{2000};
constexpr milliseconds kNetworkTime{500};
// More than a line carries while nobody reads: what sends it is no serial line.
constexpr std::size_t kMostArrived = 64 * 1024;

constexpr std::uint8_t kEightBits = 8, kNoParity = 1, kOneStopBit = 1, kPurgeBoth = 3;

constexpr const char* kEnded = " has ended the connection. Check the network and the server there";

TelnetSerial::Data BaudValue(int baud) {
  return {static_cast<std::uint8_t>(baud >> 24), static_cast<std::uint8_t>(baud >> 16),
          static_cast<std::uint8_t>(baud >> 8), static_cast<std::uint8_t>(baud)};
}

}  // namespace

bool NetSerialPort::Fail(std::string text) {
  error_ = std::move(text);
  return false;
}

bool NetSerialPort::CheckOpen() {
  if (descriptor_ >= 0) {
    error_.clear();
    return true;
  }
  return gone_ ? false : Fail("No port is open. Connect to a target first.");
}

bool NetSerialPort::Lose(const std::string& what) {
  Close();
  gone_ = true;
  return Fail(device_ + what + ", then connect again.");
}

bool NetSerialPort::Open(const std::string& device) {
  Close();
  device_ = device;
  const auto parsed = ParseNetDevice(device);
  if (!parsed) {
    return Fail(device +
                " names no line in the network: write tcp://HOST:PORT or "
                "rfc2217://HOST:PORT, with a port from 1 to 65535.");
  }
  NetConnection connection = ConnectTo(*parsed, kConnectTime);
  if (connection.descriptor < 0) return Fail(std::move(connection.error));
  descriptor_ = connection.descriptor;
  sets_line_ = parsed->sets_line;
  telnet_ = {};
  rts_switched_ = false;
  if (!sets_line_) return true;
  // The server raises DTR and RTS where it opens the line.
  return Agree() && Send(TelnetSerial::Command(LineCommand::Purge, kPurgeBoth));
}

void NetSerialPort::Close() {
  error_.clear();
  gone_ = false;
  arrived_.clear();
  if (descriptor_ < 0) return;
  ::close(descriptor_);
  descriptor_ = -1;
}

bool NetSerialPort::Agree() {
  if (!Send(TelnetSerial::Greeting())) return false;
  const auto deadline = SteadyClock::now() + kAnswerTime;
  while (!telnet_.sets_line() && SteadyClock::now() < deadline) {
    if (!Receive(deadline)) return false;
  }
  if (telnet_.sets_line().value_or(false)) return true;
  Close();
  return Fail(device_ +
              " does not set serial lines by RFC 2217. Switch that on at the server, or "
              "use tcp:// without reset and break.");
}

bool NetSerialPort::Set(LineCommand command, const TelnetSerial::Data& value,
                        const std::string& what) {
  while (telnet_.TakeAnswer(command)) {
  }
  if (!Send(TelnetSerial::Command(command, value))) return false;
  const auto deadline = SteadyClock::now() + kAnswerTime;
  while (SteadyClock::now() < deadline) {
    if (!Receive(deadline)) return false;
    // Controls share one command: what another one has left behind is passed over.
    while (const auto answer = telnet_.TakeAnswer(command)) {
      if (*answer == value) return true;
    }
  }
  return Fail(device_ + " does not confirm " + what +
              ". Its server may not be able to: use another line of it, or a line of this "
              "computer.");
}

bool NetSerialPort::Control(LineControl control, const std::string& what) {
  return Set(LineCommand::Control, {static_cast<std::uint8_t>(control)}, what);
}

bool NetSerialPort::CannotOverTcp(const std::string& what) {
  return Fail(device_ + " carries bytes alone: " + what +
              " cannot be done over it. Press the board's reset, then connect again; or have the "
              "server speak RFC 2217 and use rfc2217://.");
}

bool NetSerialPort::Configure(const base::LineSettings& settings) {
  if (!CheckOpen()) return false;
  // The server's own settings rule a line that carries bytes alone.
  if (!sets_line_) return true;
  const std::string what = "the line settings " + std::to_string(settings.baud) + " 8N1";
  return Set(LineCommand::Baud, BaudValue(settings.baud), what) &&
         Set(LineCommand::DataSize, {kEightBits}, what) &&
         Set(LineCommand::Parity, {kNoParity}, what) &&
         Set(LineCommand::StopSize, {kOneStopBit}, what) && Control(LineControl::NoFlow, what);
}

bool NetSerialPort::SetQueueSizes(int, int) {
  return CheckOpen();
}

bool NetSerialPort::SetDtr(bool high) {
  if (!CheckOpen()) return false;
  if (!sets_line_) return true;
  // Nothing on the target listens to it, so nobody waits for what became of it.
  const LineControl control = high ? LineControl::DtrHigh : LineControl::DtrLow;
  return Send(TelnetSerial::Command(LineCommand::Control, static_cast<std::uint8_t>(control)));
}

bool NetSerialPort::SetRts(bool high) {
  if (!CheckOpen()) return false;
  if (!sets_line_) return !high || CannotOverTcp("a reset by RTS");
  const bool done =
      Control(high ? LineControl::RtsHigh : LineControl::RtsLow, "that RTS was switched");
  if (done) rts_switched_ = high;
  if (done || high || rts_switched_ || descriptor_ < 0) return done;
  // A line without RTS, where nothing was ever switched: its target may have its power all the
  // same, and shows by its answers whether it has.
  error_.clear();
  return true;
}

bool NetSerialPort::SetBreak(bool on) {
  if (!CheckOpen()) return false;
  if (!sets_line_) return !on || CannotOverTcp("a break");
  return Control(on ? LineControl::BreakOn : LineControl::BreakOff, "a break");
}

bool NetSerialPort::Write(base::Bytes bytes) {
  return CheckOpen() && (sets_line_ ? Send(TelnetSerial::Escaped(bytes)) : Send(bytes));
}

bool NetSerialPort::Send(base::Bytes bytes) {
  const auto deadline = SteadyClock::now() + kAnswerTime;
  while (!bytes.empty()) {
    const ssize_t sent = ::send(descriptor_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
    if (sent > 0) {
      bytes = bytes.subspan(static_cast<std::size_t>(sent));
    } else if (sent < 0 && errno != EAGAIN && errno != EINTR) {
      return Lose(kEnded);
    } else if (WaitReady(descriptor_, POLLOUT, deadline) == 0) {
      return Fail(device_ + " takes no more bytes. Check the network, then connect again.");
    }
  }
  return true;
}

bool NetSerialPort::Receive(Deadline deadline) {
  std::array<std::uint8_t, 512> buffer{};
  for (;;) {
    const ssize_t count = ::recv(descriptor_, buffer.data(), buffer.size(), 0);
    if (count > 0) {
      const auto taken = base::Bytes(buffer).first(static_cast<std::size_t>(count));
      TelnetSerial::Data line(taken.begin(), taken.end());
      TelnetSerial::Data answer;
      if (sets_line_) {
        line.clear();
        telnet_.Take(taken, line, answer);
      }
      arrived_.insert(arrived_.end(), line.begin(), line.end());
      if (arrived_.size() > kMostArrived) {
        return Lose(" sends more than a serial line can. Check what stands behind it");
      }
      return answer.empty() || Send(answer);
    }
    if (count == 0 || (errno != EAGAIN && errno != EINTR)) return Lose(kEnded);
    if (WaitReady(descriptor_, POLLIN, deadline) == 0) return true;
  }
}

std::optional<std::size_t> NetSerialPort::Read(std::span<std::uint8_t> buffer,
                                               milliseconds timeout) {
  if (!CheckOpen()) return std::nullopt;
  const auto deadline =
      SteadyClock::now() + timeout + (timeout.count() > 0 ? kNetworkTime : milliseconds(0));
  // What has arrived is taken whatever the time-out.
  do {
    if (arrived_.size() < buffer.size() && !Receive(deadline)) return std::nullopt;
  } while (arrived_.size() < buffer.size() && SteadyClock::now() < deadline);
  const std::size_t count = std::min(buffer.size(), arrived_.size());
  std::copy_n(arrived_.begin(), count, buffer.begin());
  arrived_.erase(arrived_.begin(), arrived_.begin() + static_cast<long>(count));
  return count;
}

PortBackend MakeNetBackend() {
  struct Net {
    NetSerialPort port;
    SystemClock clock;
  };
  const auto net = std::make_shared<Net>();
  return {net, &net->port, &net->clock};
}

}  // namespace brevant::link
