// SPDX-License-Identifier: MIT
// What the name of a watched variable means in the loaded program: a symbol, or a variable or an
// expression of C, such as table[3], p->next and s.flags. Rests on the symbols and on evaluation.
#pragma once

#include <optional>
#include <string_view>

#include "eval/evaluate.h"
#include "symbols/debug_info.h"

namespace brevant::views {

// The symbol of that name, ignoring case, or spelt as in C, without the compiler's "_".
std::optional<base::Address> FindWatched(std::string_view name, const symbols::DebugInfo& info);

// No symbol lies behind it: where it lies is evaluated at each stop. A name of a function's
// variable is one, too.
bool IsExpression(std::string_view name, const symbols::DebugInfo& info);

// A variable of the program, or a local, has this very name.
bool IsSpeltSo(std::string_view name, const symbols::DebugInfo& info);

// Nothing where the name means nothing to C: it may stand for an address of its own.
std::optional<eval::Result> EvaluateWatched(std::string_view name, const eval::Context& context);

}  // namespace brevant::views
