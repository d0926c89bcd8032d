// SPDX-License-Identifier: MIT
// Where the instruction before an address begins. Instructions have one to four bytes and nothing
// marks their starts, so code cannot be read backwards: this weighs what the bytes before the
// address would be. Pure functions.
#pragma once

#include <optional>
#include <span>

#include "base/function_ref.h"

namespace brevant::views {

// How many bytes before the address are looked at.
inline constexpr int kBackwardBytes = 24;

// lengths[j] is the length of the instruction that would begin j + 1 bytes before the address.
// Fewer than 24 where the address space begins; a place beyond them has no length: no instruction
// is taken to begin there.
//
// Returns the j of a likely start, from which BackwardStart walks on; 0 when nothing speaks for
// any.
int ChooseBackwardStart(std::span<const int> lengths);

// The j of the last instruction before the address, on the chain that begins at the likely start.
// lengths must not be empty; the result is below 4 and below its size.
int BackwardStart(std::span<const int> lengths);

// The j of the last instruction before the address, on the chain that begins at the nearest place
// of which known(j) says that an instruction begins there. Nothing when there is none, or when that
// chain does not lead to the address.
std::optional<int> StartFrom(std::span<const int> lengths, base::FunctionRef<bool(int j)> known);

}  // namespace brevant::views
