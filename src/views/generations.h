// SPDX-License-Identifier: MIT
// Numbers that move when what they stand for changes. Who shows something compares them with those
// that it was drawn from.
#pragma once

namespace brevant::views {

struct Generations {
  long memory = 0;     // any byte of the target, see memory::Memory
  long registers = 0;  // the register frame
  long marks = 0;      // breakpoints
  long stops = 0;      // how often the target has come to rest
  long settings = 0;   // of all views
  long symbols = 0;    // symbols, lines and their tool chain
  bool operator==(const Generations&) const = default;
};

}  // namespace brevant::views
