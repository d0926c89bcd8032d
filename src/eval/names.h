// SPDX-License-Identifier: MIT
// What a name in an expression means: a variable of the function at hand, of its module, of the
// program, of another module; a function; a register of the CPU; a symbol without a type; a
// register of the MCU. Names that are spelt exactly so come first, then those that differ in case,
// as lists of names of other tools need it.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "eval/context.h"
#include "eval/value.h"

namespace brevant::eval {

struct Named {
  std::optional<Value> value = {};
  std::string problem = {};  // for people, where there is no value
};

// scope is the file, module or function before the name, or empty.
Named FindName(std::string_view name, std::string_view scope, const Context& context);
// "PC", "sp", ...; in either case.
std::optional<Value> FindRegister(std::string_view name, const Context& context);

// The variable as the function at hand finds it: its place, or why it has none here.
Value ValueOf(const symbols::Variable& variable, const Context& context);

}  // namespace brevant::eval
