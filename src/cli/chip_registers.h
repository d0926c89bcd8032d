// SPDX-License-Identifier: MIT
// Registers of the MCU on the console.
#pragma once

#include <string>

#include "cli/result.h"
#include "cli/session.h"
#include "eval/value.h"

namespace brevant::cli {

// "set PTA.3 1": hexadecimal digits, or the number that an expression comes to, into a register or
// a field of one, which what is called. Tells what the register holds where that is something else.
Result SetChipRegister(Session& session, const std::string& what, const eval::Value& to,
                       const std::string& value);

// Says what reading the address has done besides, if it is that of such a register.
void TellOfReading(Session& session, base::Address address);

}  // namespace brevant::cli
