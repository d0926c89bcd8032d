// SPDX-License-Identifier: MIT
// Which function of the program an address belongs to. Rests on the debug information.
#pragma once

#include "base/address.h"
#include "symbols/debug_info.h"

namespace brevant::frames {

// Null where the tool chain tells of none. Valid until the debug information changes.
const symbols::Function* FunctionAt(base::Address address, const symbols::DebugInfo& info);

}  // namespace brevant::frames
