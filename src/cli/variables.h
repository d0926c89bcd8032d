// SPDX-License-Identifier: MIT
// Variables of the program on the console.
#pragma once

#include <string>

#include "cli/result.h"
#include "cli/session.h"

namespace brevant::cli {

// A variable of the program, or of the function at PC, is spelt exactly so.
bool IsVariable(Session& session, const std::string& word);
// "set p->x 5": an expression's value into what another one names, read back.
Result SetVariable(Session& session, const std::string& what, const std::string& value);

// "io_put at io.c:7": the function and line at an address, as much as is known; else its digits.
std::string PlaceText(Session& session, base::Address address);

}  // namespace brevant::cli
