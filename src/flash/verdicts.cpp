// SPDX-License-Identifier: MIT
#include "flash/verdicts.h"

#include "base/text_format.h"

namespace brevant::flash {

std::string ErasedText(std::span<const devices::MemoryRange> erased) {
  std::string ranges;
  for (const devices::MemoryRange& range : erased) {
    if (!ranges.empty()) ranges += ", ";
    ranges += base::Format("%04x to %04x", range.first, range.last);
  }
  return "erased " + ranges + ", all blank";
}

}  // namespace brevant::flash
