// SPDX-License-Identifier: MIT
// What tests of every instruction go through.
#pragma once

#include <cstdint>
#include <vector>

#include "isa/instruction_table.h"

namespace brevant::isa {

// 290: each a byte, or the page prefix and a byte.
inline std::vector<std::vector<std::uint8_t>> LegalOpcodes() {
  std::vector<std::vector<std::uint8_t>> opcodes;
  for (int code = 0; code < 256; ++code) {
    const auto byte = static_cast<std::uint8_t>(code);
    if (!Decode(byte, 0).illegal()) opcodes.push_back({byte});
    if (!Decode(kPagePrefix, byte).illegal()) opcodes.push_back({kPagePrefix, byte});
  }
  return opcodes;
}

}  // namespace brevant::isa
