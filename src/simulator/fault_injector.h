// SPDX-License-Identifier: MIT
// A fault plan being carried out: counts the host's bytes and says what goes wrong with each of
// them and with the replies. The wire applies what it says. A plain value.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>

#include "simulator/fault_plan.h"

namespace brevant::simulator {

// What happens to one host byte and to the monitor's echo of it.
struct HostByteFaults {
  bool lose = false;
  bool drop_copy = false;
  bool drop_echo = false;
  bool delay = false;
  bool cut = false;
  bool reset = false;
  std::uint8_t flip = 0;       // bits inverted on the way to the MCU
  std::uint8_t flip_echo = 0;  // bits inverted in the echo
  std::optional<std::uint8_t> extra;
};

// What happens to one reply byte or break character.
struct ReplyFaults {
  bool lose = false;
  std::uint8_t flip = 0;
};

class FaultInjector {
 public:
  // Counting starts again at 0, and faults that still waited for a reply are forgotten.
  void Install(FaultPlan plan);
  HostByteFaults NextHostByte();
  // Each reply byte takes one of the faults that wait for a reply, oldest first.
  ReplyFaults NextReply();

 private:
  FaultPlan plan_;
  std::uint64_t host_bytes_ = 0;
  std::deque<ReplyFaults> waiting_;
};

}  // namespace brevant::simulator
