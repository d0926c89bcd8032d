// SPDX-License-Identifier: MIT
// Numbers that move when what they stand for changes. Who shows something compares them with those
// that it was drawn from, and pulls what it needs.
#pragma once

namespace brevant::base {

struct Generations {
  long memory = 0;     // any byte of the target
  long registers = 0;  // the register frame, PC among them
  long marks = 0;      // breakpoints
  long stops = 0;      // how often the target has come to rest
  long settings = 0;   // of all views
  long symbols = 0;    // symbols and source lines
  bool operator==(const Generations&) const = default;
};

}  // namespace brevant::base
