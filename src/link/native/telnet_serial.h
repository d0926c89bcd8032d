// SPDX-License-Identifier: MIT
// A serial line behind a telnet connection, as RFC 2217 has it: bytes of the line are data, its
// settings are subnegotiations of one option. Pure: bytes in, bytes out; the socket is elsewhere.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "base/address.h"

namespace brevant::link {

// The option's commands of a client; the server's answers are 100 above.
enum class LineCommand : std::uint8_t {
  Baud = 1,
  DataSize = 2,
  Parity = 3,
  StopSize = 4,
  Control = 5,
  Purge = 12,
};
// Values of LineCommand::Control.
enum class LineControl : std::uint8_t {
  NoFlow = 1,
  BreakOn = 5,
  BreakOff = 6,
  DtrHigh = 8,
  DtrLow = 9,
  RtsHigh = 11,
  RtsLow = 12,
};

class TelnetSerial {
 public:
  using Data = std::vector<std::uint8_t>;

  // What a client says first: both ways are binary without go-ahead, and the line is to be set.
  static Data Greeting();
  // Data for the line; a byte that telnet would take for its own is doubled.
  static Data Escaped(base::Bytes bytes);
  static Data Command(LineCommand command, base::Bytes value);
  static Data Command(LineCommand command, std::uint8_t value);

  // Takes what has arrived. Bytes of the line are appended to line, what has to be answered to
  // answer. An incomplete command is kept for the next call.
  void Take(base::Bytes arrived, Data& line, Data& answer);

  // The server has said whether it sets the line; nothing while it has not said so.
  std::optional<bool> sets_line() const { return sets_line_; }
  // What the server says that the command's value is now; forgets it.
  std::optional<Data> TakeAnswer(LineCommand command);

 private:
  enum class State { Line, Command, Option, Sub, SubCommand };
  struct Answer {
    std::uint8_t command;
    Data value;
  };

  void TakeOption(std::uint8_t option, Data& answer);
  void EndSub();

  State state_ = State::Line;
  std::uint8_t verb_ = 0;
  Data sub_;
  std::optional<bool> sets_line_;
  std::vector<Answer> answers_;
};

}  // namespace brevant::link
