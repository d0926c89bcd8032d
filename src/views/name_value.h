// SPDX-License-Identifier: MIT
// What a name in the code means here and now, in one line: for a pointer that rests over it.
#pragma once

#include <string>

#include "eval/context.h"

namespace brevant::views {

// "unsigned int counter = 300"; "i is not available here (...)". "0000 PTA (port A data) = 3f
// %00111111" for a register of the MCU. Empty for what is no name of the program or the MCU. May
// read the target.
std::string NameValueText(const std::string& word, const eval::Context& context);

}  // namespace brevant::views
