// SPDX-License-Identifier: MIT
// The lines beside the data of a terminal device: DTR, RTS and the break condition.
//
// A real port has these lines. A pseudo-terminal has none, and the kernel drops a break sent on it
// without a word; the program at its other end sees nothing but the line settings. So that a target
// behind a pseudo-terminal can be reset and stopped all the same, the lines are written into
// settings that mean nothing there:
//   RTS high    <=> CRTSCTS set
//   break held  <=> output speed 75 baud (9600 otherwise)
// DTR is not carried; nothing on the target listens to it.
#pragma once

#include <termios.h>

namespace brevant::link {

enum class LineKind { Real, PseudoTerminal };

class ModemLines {
 public:
  // The descriptor is the caller's and stays open as long as this object is used.
  ModemLines(int descriptor, LineKind kind) : descriptor_(descriptor), kind_(kind) {}
  LineKind kind() const { return kind_; }

  // Each returns false, with errno set, when the driver refuses.
  bool SetDtr(bool high) const;
  bool SetRts(bool high) const;
  bool SetBreak(bool on) const;

  // 9600 baud 8N1, raw, without flow control. Fields that the link does not fix are left alone, and
  // so is whatever carries a line.
  void Configure(termios& settings) const;

 private:
  bool SetModemBit(int bit, bool on) const;

  int descriptor_;
  LineKind kind_;
};

// By the device's own name, so that a symbolic link to a pseudo-terminal counts as one.
LineKind KindOfLine(int descriptor);

}  // namespace brevant::link
