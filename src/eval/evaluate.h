// SPDX-License-Identifier: MIT
// Expressions about the stopped program, evaluated as C would: integers are promoted to int (16
// bits here) and wrap, comparisons give 0 or 1, pointers count in what they point at. Nothing is
// written but by Assign, and no function is called. Rests on the door to memory and the debug
// information.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "eval/context.h"
#include "eval/tree.h"
#include "eval/value.h"

namespace brevant::eval {

struct Result {
  // Not loaded: what lies in memory is told by its place. May be unavailable.
  Value value = {};
  std::string problem = {};  // for people: "p is no structure"; empty when there is a value
  bool ok() const { return problem.empty(); }
};

Result Evaluate(const Tree& tree, const Context& context);
Result Evaluate(std::string_view text, const Context& context);

// The value with its number, or real, read from its place: of integers, pointers and floats. What
// cannot be read becomes unavailable.
Value Loaded(Value value, const Context& context);

// Writes a number, or another value's, to where the value lies, and reads it back. Empty, or what
// was wrong: it does not fit, is a structure, lies in flash, memory holds something else.
std::string Assign(const Value& to, const Value& what, const Context& context);

// What can be shown of a value below it: members, elements, what a pointer points at. Nothing for
// numbers, and for pointers to nothing known.
struct Part {
  std::string name;  // "x", "[3]", "*"
  Value value;
};
bool HasParts(const Value& value, const Context& context);
// The first `most` of them. Reads no more than a pointer.
std::vector<Part> PartsOf(const Value& value, const Context& context, int most);

}  // namespace brevant::eval
