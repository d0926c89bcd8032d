// SPDX-License-Identifier: MIT
#include "frames/function_at.h"

#include <algorithm>

namespace brevant::frames {

const symbols::Function* FunctionAt(base::Address address, const symbols::DebugInfo& info) {
  const auto found = std::ranges::find_if(info.functions, [address](const auto& function) {
    return function.first <= address && address <= function.last;
  });
  return found == info.functions.end() ? nullptr : &*found;
}

}  // namespace brevant::frames
