// SPDX-License-Identifier: MIT
#include "link/native/modem_lines.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <array>
#include <string_view>

namespace brevant::link {

namespace {

constexpr speed_t kLinkSpeed = B9600;
constexpr speed_t kBreakHeld = B75;

}  // namespace

LineKind KindOfLine(int descriptor) {
  std::array<char, 64> name{};
  if (::ttyname_r(descriptor, name.data(), name.size()) != 0) return LineKind::Real;
  return std::string_view(name.data()).starts_with("/dev/pts/") ? LineKind::PseudoTerminal
                                                                : LineKind::Real;
}

bool ModemLines::SetModemBit(int bit, bool on) const {
  return ::ioctl(descriptor_, on ? TIOCMBIS : TIOCMBIC, &bit) == 0;
}

bool ModemLines::SetDtr(bool high) const {
  return kind_ == LineKind::PseudoTerminal || SetModemBit(TIOCM_DTR, high);
}

bool ModemLines::SetRts(bool high) const {
  if (kind_ == LineKind::Real) return SetModemBit(TIOCM_RTS, high);
  termios settings;
  if (::tcgetattr(descriptor_, &settings) != 0) return false;
  settings.c_cflag = high ? settings.c_cflag | CRTSCTS : settings.c_cflag & ~CRTSCTS;
  return ::tcsetattr(descriptor_, TCSANOW, &settings) == 0;
}

bool ModemLines::SetBreak(bool on) const {
  if (kind_ == LineKind::Real) return ::ioctl(descriptor_, on ? TIOCSBRK : TIOCCBRK) == 0;
  termios settings;
  if (::tcgetattr(descriptor_, &settings) != 0) return false;
  ::cfsetospeed(&settings, on ? kBreakHeld : kLinkSpeed);
  return ::tcsetattr(descriptor_, TCSANOW, &settings) == 0;
}

void ModemLines::Configure(termios& settings) const {
  // A break of the monitor must arrive as one 0x00 byte: neither dropped, nor a signal, nor marked.
  settings.c_iflag &= ~static_cast<tcflag_t>(IGNBRK | BRKINT | IGNPAR | PARMRK | INPCK | ISTRIP |
                                             INLCR | IGNCR | ICRNL | IXON | IXOFF | IXANY);
  settings.c_oflag &= ~static_cast<tcflag_t>(OPOST);
  settings.c_lflag &=
      ~static_cast<tcflag_t>(ICANON | ECHO | ECHOE | ECHOK | ECHONL | ISIG | IEXTEN);
  settings.c_cflag &= ~static_cast<tcflag_t>(CSIZE | PARENB | PARODD | CSTOPB);
  settings.c_cflag |= CS8 | CREAD | CLOCAL;
  if (kind_ == LineKind::Real) settings.c_cflag &= ~static_cast<tcflag_t>(CRTSCTS);
  // Wake the reader for each byte.
  settings.c_cc[VMIN] = 1;
  settings.c_cc[VTIME] = 0;
  ::cfsetispeed(&settings, kLinkSpeed);
  ::cfsetospeed(&settings, kLinkSpeed);
}

}  // namespace brevant::link
