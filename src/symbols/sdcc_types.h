// SPDX-License-Identifier: MIT
// SDCC's type chains as C text: "DA3d,STpt:S" is "struct pt[3]". The chain reads from the variable
// inwards: DA<n>d array, DF function, other D<letter> pointers, and at its end S and the base type
// with its sign.
#pragma once

#include <string>
#include <string_view>

#include "base/function_ref.h"

namespace brevant::symbols {

// size is that of the whole variable, 0 when it is not known: the chain says SI for int and for
// long long. is_union tells for a tag whether it names a union: the chain does not say. An unknown
// chain is returned as it stands.
std::string SdccTypeText(std::string_view chain, int size,
                         base::FunctionRef<bool(std::string_view tag)> is_union);

// True when a type record's members ("({0}S:S$x$0_0$0({1}SC:U),Z,0,0)...") all start at offset 0,
// are more than one, and are no bit-fields.
bool IsUnionRecord(std::string_view members);

}  // namespace brevant::symbols
