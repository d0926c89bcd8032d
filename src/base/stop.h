// SPDX-License-Identifier: MIT
// Why and where the target has come to rest, as a value.
#pragma once

#include <string>
#include <string_view>

#include "base/address.h"

namespace brevant::base {

enum class StopReason {
  Breakpoint,    // of the user; PC is its address
  StepDone,      // the instruction, or the repeated steps, that were asked for
  PlaceReached,  // the address, line or symbol that was asked for
  OwnSwi,        // an SWI of the program itself; PC is the address behind it
  UserBreak,     // the break signal, or the end of repeated stepping by the user
  Reset,
  LinkLost,      // nothing is known of the target
  NotRecovered,  // it stopped, but its stack pointer could not be restored
  BadStack,      // its stack pointer lies outside RAM, so that no register could be saved
  Refused,       // the program runs on: it does not answer the break signal, or none could be sent
  NotStarted,    // an SWI cannot stand where the program would have to stop
  McuReset,      // the MCU has reset itself meanwhile and was entered anew; RAM is as it was
};

struct Stop {
  StopReason reason = StopReason::Reset;
  Address pc = 0;           // meaningless for LinkLost, BadStack and Refused
  std::string detail = {};  // more for people; may be empty
  bool operator==(const Stop&) const = default;
};

// A word for programs, which does not change: "breakpoint", "step", "place", "swi", "break", ...
std::string_view StopWord(StopReason reason);
// One line for people: "breakpoint at 8021".
std::string StopText(const Stop& stop);

}  // namespace brevant::base
