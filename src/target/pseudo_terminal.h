// SPDX-License-Identifier: MIT
// The master side of a pseudo-terminal that stands in for a serial port. A pseudo-terminal has no
// modem lines and drops break conditions, so both are read from settings that the client makes on
// its side: hardware flow control means RTS high, an output speed of 75 means that the break
// condition is held.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

#include "base/address.h"

namespace brevant::target {

struct LineState {
  bool rts = false;
  bool break_held = false;
  bool operator==(const LineState&) const = default;
};

class PseudoTerminal {
 public:
  PseudoTerminal() = default;
  ~PseudoTerminal();
  PseudoTerminal(const PseudoTerminal&) = delete;
  PseudoTerminal& operator=(const PseudoTerminal&) = delete;

  // Makes a raw terminal at 9600 baud. False: see error().
  bool Open();
  // What a client opens, "/dev/pts/3".
  const std::string& name() const { return name_; }
  const std::string& error() const { return error_; }

  // Whether a client has the terminal open.
  bool HasClient() const;
  LineState ReadLineState() const;
  // Sleeps until the client has sent or closed, the other descriptor is readable, or the time has
  // passed. Without a client only the other descriptor is watched.
  void Wait(int other, std::chrono::nanoseconds time, bool watch_client) const;
  // Takes what the client has sent; 0 when there is nothing.
  std::size_t Read(std::span<std::uint8_t> buffer) const;
  // Bytes that the client leaves unread are dropped once the terminal's buffer is full.
  void Write(base::Bytes bytes) const;
  // Drops what is under way in both directions.
  void Flush() const;

 private:
  bool Fail(const char* what);

  int master_ = -1;
  std::string name_;
  std::string error_;
};

}  // namespace brevant::target
