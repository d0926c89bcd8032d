// SPDX-License-Identifier: MIT
#include "link/native/native_serial_port.h"

#include <fcntl.h>
#include <linux/serial.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

#include "link/native/descriptor_wait.h"
#include "link/native/port_errors.h"
#include "link/system_clock.h"

namespace brevant::link {

namespace {

using SteadyClock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr int kDriverQueue = 4096;  // of the Linux terminal layer

std::string PathOf(const std::string& device) {
  return device.starts_with('/') ? device : "/dev/" + device;
}

bool IsGone(int error_number) {
  return error_number == EIO || error_number == ENXIO || error_number == ENODEV ||
         error_number == EBADF;
}

}  // namespace

bool NativeSerialPort::Fail(std::string text) {
  error_ = std::move(text);
  return false;
}

bool NativeSerialPort::CheckOpen() {
  if (descriptor_ >= 0) {
    error_.clear();
    return true;
  }
  return gone_ ? false : Fail("No port is open. Connect to a target first.");
}

void NativeSerialPort::LoseDevice() {
  const std::string text = GoneText(path_, lines_->kind());
  Close();
  gone_ = true;
  error_ = text;
}

bool NativeSerialPort::Open(const std::string& device) {
  Close();
  path_ = PathOf(device);
  descriptor_ = ::open(path_.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
  if (descriptor_ < 0) return Fail(OpenErrorText(path_, errno, FindSerialDevices()));
  if (!Claim()) return false;
  AskForLowLatency();
  lines_.emplace(descriptor_, KindOfLine(descriptor_));
  // The driver has raised the lines of a real port. On the others this is what opening means; a
  // port that has no such lines says so when they are needed.
  lines_->SetDtr(true);
  lines_->SetRts(true);
  return true;
}

// Exclusive against programs that ask the driver (TIOCEXCL) and those that lock the file, which
// also holds against a privileged user.
bool NativeSerialPort::Claim() {
  const bool terminal = ::isatty(descriptor_) == 1;
  const bool locked = terminal && ::flock(descriptor_, LOCK_EX | LOCK_NB) == 0 &&
                      ::ioctl(descriptor_, TIOCEXCL) == 0;
  if (locked) return true;
  const int error_number = !terminal ? ENOTTY : errno == EWOULDBLOCK ? EBUSY : errno;
  ::close(descriptor_);
  descriptor_ = -1;
  return Fail(OpenErrorText(path_, error_number, {}));
}

// USB adapters collect what arrives for up to 16 ms before they pass it on, which every echo would
// wait for. Not every driver has the switch, and the link works without it.
void NativeSerialPort::AskForLowLatency() const {
  serial_struct serial{};
  if (::ioctl(descriptor_, TIOCGSERIAL, &serial) != 0) return;
  serial.flags |= ASYNC_LOW_LATENCY;
  ::ioctl(descriptor_, TIOCSSERIAL, &serial);
}

void NativeSerialPort::Close() {
  error_.clear();
  gone_ = false;
  lines_.reset();
  if (descriptor_ < 0) return;
  ::ioctl(descriptor_, TIOCNXCL);
  ::close(descriptor_);
  descriptor_ = -1;
}

bool NativeSerialPort::Configure(const base::LineSettings& settings) {
  if (!CheckOpen()) return false;
  if (settings.baud != 9600) return Fail("Only 9600 baud is understood.");
  termios line{};
  if (::tcgetattr(descriptor_, &line) != 0) {
    return Fail(RefusedText(path_, "to tell its line settings", errno));
  }
  lines_->Configure(line);
  // The driver reports success as soon as any one field has been taken, so look what it took.
  termios taken{};
  if (::tcsetattr(descriptor_, TCSANOW, &line) != 0 || ::tcgetattr(descriptor_, &taken) != 0) {
    return Fail(RefusedText(path_, "the line settings 9600 8N1", errno));
  }
  constexpr tcflag_t kFixed = CSIZE | PARENB | CSTOPB | CRTSCTS;
  if ((taken.c_cflag & kFixed) != (line.c_cflag & kFixed) ||
      ::cfgetospeed(&taken) != ::cfgetospeed(&line)) {
    return Fail(RefusedText(path_, "the line settings 9600 8N1", EINVAL));
  }
  return true;
}

bool NativeSerialPort::SetQueueSizes(int receive_bytes, int transmit_bytes) {
  if (!CheckOpen()) return false;
  if (receive_bytes <= kDriverQueue && transmit_bytes <= kDriverQueue) return true;
  return Fail("The driver's queues hold 4096 bytes each.");
}

bool NativeSerialPort::Line(bool (ModemLines::*set)(bool) const, bool high, const char* what) {
  if (!CheckOpen()) return false;
  if (((*lines_).*set)(high)) return true;
  const int error_number = errno;
  if (IsGone(error_number)) {
    LoseDevice();
    return false;
  }
  return Fail(RefusedText(path_, what, error_number));
}

bool NativeSerialPort::SetDtr(bool high) {
  return Line(&ModemLines::SetDtr, high, "to switch DTR");
}

bool NativeSerialPort::SetRts(bool high) {
  return Line(&ModemLines::SetRts, high, "to switch RTS");
}

bool NativeSerialPort::SetBreak(bool on) {
  return Line(&ModemLines::SetBreak, on, "to send a break");
}

bool NativeSerialPort::Write(base::Bytes bytes) {
  if (!CheckOpen()) return false;
  const auto deadline =
      SteadyClock::now() + milliseconds(100) + milliseconds(10) * static_cast<long>(bytes.size());
  while (!bytes.empty()) {
    const ssize_t written = ::write(descriptor_, bytes.data(), bytes.size());
    if (written > 0) {
      bytes = bytes.subspan(static_cast<std::size_t>(written));
    } else if (written < 0 && errno != EAGAIN && errno != EINTR) {
      LoseDevice();
      return false;
    } else if (WaitReady(descriptor_, POLLOUT, deadline) == 0) {
      return Fail(path_ + " takes no more bytes. Check the cable, then connect again.");
    }
  }
  return true;
}

NativeSerialPort::Arrived NativeSerialPort::ReadOnce(std::span<std::uint8_t> buffer,
                                                     std::size_t& count) {
  const ssize_t received = ::read(descriptor_, buffer.data(), buffer.size());
  if (received > 0) {
    count += static_cast<std::size_t>(received);
    return Arrived::Bytes;
  }
  // A terminal that was hung up reads as an end of file.
  if (received == 0 || (errno != EAGAIN && errno != EINTR)) return Arrived::Failed;
  return Arrived::Nothing;
}

std::optional<std::size_t> NativeSerialPort::Read(std::span<std::uint8_t> buffer,
                                                  milliseconds timeout) {
  if (!CheckOpen()) return std::nullopt;
  const auto deadline = SteadyClock::now() + timeout;
  std::size_t count = 0;
  while (count < buffer.size()) {
    const Arrived arrived = ReadOnce(buffer.subspan(count), count);
    if (arrived == Arrived::Failed) {
      LoseDevice();
      return std::nullopt;
    }
    if (arrived == Arrived::Nothing && WaitReady(descriptor_, POLLIN, deadline) == 0) break;
  }
  return count;
}

PortBackend MakeNativeBackend() {
  struct Native {
    NativeSerialPort port;
    SystemClock clock;
  };
  const auto native = std::make_shared<Native>();
  return {native, &native->port, &native->clock};
}

}  // namespace brevant::link
