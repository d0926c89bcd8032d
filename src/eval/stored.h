// SPDX-License-Identifier: MIT
// Values as they stand in the target's memory: the most significant byte first, floats as IEEE 754
// singles, bit-fields from the lowest bit of their first byte upwards.
#pragma once

#include <cstdint>
#include <vector>

#include "eval/context.h"
#include "eval/value.h"

namespace brevant::eval {

// A member of a structure that lies somewhere.
Value MemberValue(const Value& whole, const symbols::Member& member, const Context& context);

// Bytes that a scalar takes at its place.
int StoredBytes(const Value& value);
// The number, or real, that these bytes are.
Value FromBytes(Value value, base::Bytes bytes);
// The bytes of the number at a place that holds `before` now, of which a bit-field changes a part.
std::vector<std::uint8_t> ToBytes(const Value& to, const Value& what, base::Bytes before);

}  // namespace brevant::eval
