// SPDX-License-Identifier: MIT
// Values as text. Rests on their evaluation.
#pragma once

#include <string>

#include "eval/context.h"
#include "eval/value.h"

namespace brevant::eval {

enum class Notation { AsC, Hexadecimal, Binary };

// As C writes it: "-3", "\"hello\"" for an array of characters, "{x = 1, y = 2}", "{1, 2, 3}",
// "0x0089" for a pointer, "0x80e9 <sum_to>" for one to a function. Long arrays and deep structures
// end in
// "...". What cannot be told reads "not available here (...)".
std::string ValueText(const Value& value, const Context& context,
                      Notation notation = Notation::AsC);

// "unsigned char [4]"; "?" where the program does not say.
std::string TypeText(const Value& value, const Context& context);

}  // namespace brevant::eval
