// SPDX-License-Identifier: MIT
#include "target/pseudo_terminal.h"

#include <fcntl.h>
#include <poll.h>
#include <stdlib.h>  // NOLINT(modernize-deprecated-headers): posix_openpt
#include <termios.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <system_error>

namespace brevant::target {

PseudoTerminal::~PseudoTerminal() {
  if (master_ >= 0) close(master_);
}

bool PseudoTerminal::Fail(const char* what) {
  error_ = std::string(what) + ": " + std::generic_category().message(errno);
  return false;
}

bool PseudoTerminal::Open() {
  master_ = posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
  if (master_ < 0) return Fail("No pseudo-terminal can be made");
  if (grantpt(master_) != 0 || unlockpt(master_) != 0) {
    return Fail("The pseudo-terminal cannot be given to a client");
  }
  std::array<char, 128> name{};
  if (ptsname_r(master_, name.data(), name.size()) != 0) {
    return Fail("The pseudo-terminal has no name");
  }
  name_ = name.data();

  termios settings{};
  if (tcgetattr(master_, &settings) != 0) return Fail("The pseudo-terminal has no settings");
  cfmakeraw(&settings);
  settings.c_cflag |= CREAD | CLOCAL;
  cfsetispeed(&settings, B9600);
  cfsetospeed(&settings, B9600);
  if (tcsetattr(master_, TCSANOW, &settings) != 0) {
    return Fail("The pseudo-terminal refuses its settings");
  }
  // A terminal that was never open does not report that nobody has it open.
  const int client = open(name_.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
  if (client < 0) return Fail("The pseudo-terminal cannot be opened");
  close(client);
  return true;
}

bool PseudoTerminal::HasClient() const {
  pollfd watched{master_, POLLIN, 0};
  return poll(&watched, 1, 0) >= 0 && (watched.revents & POLLHUP) == 0;
}

LineState PseudoTerminal::ReadLineState() const {
  termios settings{};
  if (tcgetattr(master_, &settings) != 0) return {};
  return {.rts = (settings.c_cflag & CRTSCTS) != 0, .break_held = cfgetospeed(&settings) == B75};
}

void PseudoTerminal::Wait(int other, std::chrono::nanoseconds time, bool watch_client) const {
  std::array<pollfd, 2> watched{{{other, POLLIN, 0}, {watch_client ? master_ : -1, POLLIN, 0}}};
  const auto seconds = std::chrono::floor<std::chrono::seconds>(time);
  const timespec limit{static_cast<time_t>(seconds.count()),
                       static_cast<long>((time - seconds).count())};
  ppoll(watched.data(), watched.size(), &limit, nullptr);
}

std::size_t PseudoTerminal::Read(std::span<std::uint8_t> buffer) const {
  const ssize_t count = read(master_, buffer.data(), buffer.size());
  return count > 0 ? static_cast<std::size_t>(count) : 0;
}

void PseudoTerminal::Write(base::Bytes bytes) const {
  while (!bytes.empty()) {
    const ssize_t count = write(master_, bytes.data(), bytes.size());
    if (count <= 0) return;
    bytes = bytes.subspan(static_cast<std::size_t>(count));
  }
}

void PseudoTerminal::Flush() const {
  tcflush(master_, TCIOFLUSH);
}

}  // namespace brevant::target
