// SPDX-License-Identifier: MIT
// The shortest time that the monitor's commands can take on the wire, for those that a host has
// sent.
#pragma once

#include <algorithm>
#include <cstdint>

namespace brevant {

inline constexpr double kBaud = 9600;

struct CommandCost {
  std::uint8_t code;
  int bytes;
  int bits;
};
inline constexpr CommandCost kCommands[] = {{0x4A, 3, 91}, {0x49, 4, 92}, {0x1A, 1, 55},
                                            {0x19, 2, 46}, {0x0C, 1, 55}, {0x28, 1, 23}};

class CommandCosts {
 public:
  // The next byte of the host.
  void Count(std::uint8_t byte) {
    if (operands_left_ > 0) {
      --operands_left_;
      return;
    }
    const auto* command = std::ranges::find(kCommands, byte, &CommandCost::code);
    if (command == std::ranges::end(kCommands)) return;
    operands_left_ = command->bytes - 1;
    bits_ += command->bits;
  }
  double seconds() const { return bits_ / kBaud; }
  void Clear() { bits_ = 0; }

 private:
  int operands_left_ = 0;
  double bits_ = 0;
};

}  // namespace brevant
