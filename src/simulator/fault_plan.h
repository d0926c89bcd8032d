// SPDX-License-Identifier: MIT
// What goes wrong on the wire or on the board, and at which byte: for tests of everything that must
// survive it.
#pragma once

#include <cstdint>
#include <vector>

namespace brevant::simulator {

enum class FaultKind {
  LoseHostByte,     // the byte sent never reaches the wire: no copy, no echo
  DropLocalEcho,    // the MCU gets it, but the host's own copy is lost
  DropMonitorEcho,  // the monitor's echo is lost
  FlipEcho,         // one bit of the monitor's echo is inverted
  FlipHostByte,     // one bit is inverted on the way to the MCU, and so in its echo
  FlipReply,        // one bit of a reply byte is inverted
  LoseReply,        // a reply byte or break character is lost
  ExtraByte,        // a stray byte arrives at the host before the next one
  DelayByte,        // what the MCU answers to this byte arrives 500 ms late
  CutLine,          // the cable is pulled: nothing arrives any more, reads fail
  ResetMcu,         // the MCU sees a power-on reset
};

struct Fault {
  FaultKind kind = FaultKind::LoseHostByte;
  // Counted from 0 over the bytes the host has sent since the plan was installed. Reply faults act
  // on the first reply byte after it.
  std::uint64_t at_host_byte = 0;
  std::uint8_t bit = 0;       // of the flips
  std::uint8_t extra = 0x55;  // of ExtraByte
};

using FaultPlan = std::vector<Fault>;

}  // namespace brevant::simulator
