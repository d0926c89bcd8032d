// SPDX-License-Identifier: MIT
// The line of source that an address belongs to, and no line where there is none: code of a library
// behind the last line is not that line's. Rests on the debug information.
#pragma once

#include <optional>

#include "base/address.h"
#include "memory/memory.h"
#include "symbols/debug_info.h"

namespace brevant::frames {

// Inside a function with lines the nearest one at or below the address. Elsewhere that of the very
// address; where the tool chain tells no functions, the nearest below that no other symbol follows.
std::optional<symbols::SourceLine> LineAt(base::Address address, const symbols::DebugInfo& info);

// The bytes around the address that belong to its line without a gap. Only for one with a line.
memory::Range CodeOfLineAt(base::Address address, const symbols::DebugInfo& info);

// Where the function's own statements begin: its second line, behind what it does on entry. Its
// first address where it has no such line.
base::Address FirstStatement(const symbols::Function& function, const symbols::DebugInfo& info);

}  // namespace brevant::frames
