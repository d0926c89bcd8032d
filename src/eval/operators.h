// SPDX-License-Identifier: MIT
// What C's operators do with numbers and pointers, and its types by their names. Pure functions.
#pragma once

#include <optional>
#include <span>
#include <string_view>

#include "eval/evaluate.h"

namespace brevant::eval {

// A literal's value: the first of int, long and long long that holds it, and which of their signs.
// A number below 0 stands for one of 64 bits without a sign.
enum class Signs { Signed, Either, Unsigned };
Value NumberValue(std::int64_t number, Signs signs);

bool IsTrue(const Value& value);

// The scalar as another scalar type.
Value Converted(const Value& value, const symbols::Type& type);

// Unary and binary operators, of loaded scalars.
Result Applied(Op op, std::span<const Value> operands, const Context& context);

// "unsigned char" with so many '*' behind it, or a structure of the program.
std::optional<symbols::Type> TypeNamed(std::string_view name, int stars, const Context& context);
// What a pointer points at that was made by naming C's own types; nothing for others.
std::optional<symbols::Type> MadeTarget(const Value& pointer);

}  // namespace brevant::eval
