// SPDX-License-Identifier: MIT
// One line of a macro file as a value: "PC 8000", "DMM.B 1F 01" or "DMM.W FE00,1234 ; comment".
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "base/address.h"

namespace brevant::load {

enum class MacroAction {
  SetPc,      // to address
  WriteByte,  // value at address
  WriteWord,  // value, high byte first, at address
};

struct MacroCommand {
  MacroAction action = MacroAction::SetPc;
  base::Address address = 0;  // 16 bits
  std::uint32_t value = 0;    // 8 or 16 bits; 0 for SetPc
};

// Nothing for blank lines, comments, unknown commands, and operands that are missing, too long or
// not hexadecimal. Words behind the operands are ignored.
std::optional<MacroCommand> ParseMacroLine(std::string_view line);

}  // namespace brevant::load
