// SPDX-License-Identifier: MIT
// The C libraries' function names, by which stepping recognises calls into library code.
#pragma once

#include <string_view>

#include "base/address.h"
#include "symbols/debug_info.h"

namespace brevant::symbols {

// Imagecraft: the name without its first character is in its list; Introl: the whole name is in its
// list; any other tool chain: every non-empty name.
bool IsLibraryName(std::string_view name, ToolChain tool_chain);
// The first symbol at the address is a library name; false when there is none. SDCC says which
// functions have source lines: those are the program's own, whatever their names.
bool IsLibraryCall(base::Address address, const DebugInfo& info);

}  // namespace brevant::symbols
