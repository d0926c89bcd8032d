// SPDX-License-Identifier: MIT
// Registers of the MCU as the user looks at them and sets them. Nothing is read by the way: no
// register beside those that are wanted. What must not be written is refused with the reason, and
// what has become of a write is looked at wherever looking does no harm.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "devices/registers.h"
#include "memory/memory.h"

namespace brevant::memory {

// What they hold, in their order; nothing for those that change on being read, which are not read,
// and for what the line has damaged each time or a lost link kept back.
std::vector<std::optional<std::uint8_t>> ReadRegisters(
    Memory& memory, std::span<const devices::Register* const> rows);
// Of one register, whatever reading does.
std::optional<std::uint8_t> ReadRegister(Memory& memory, const devices::Register& row);

struct RegisterWrite {
  std::string refused = {};  // why nothing was written, for people; empty: it was
  // Where the register does not hold what was written, or nobody has looked: "CONFIG1 reads back
  // 01". Many registers do not take every bit, so that this alone is no failure.
  std::string remark = {};
};

// A WRITE, and a READ where reading changes nothing.
RegisterWrite WriteRegister(Memory& memory, const devices::Register& row, std::uint8_t value);
// The bits of the field; the others become what they read as. Refused where reading has an effect,
// and where the value does not fit.
RegisterWrite WriteField(Memory& memory, const devices::Register& row, const devices::Field& field,
                         std::uint32_t value);

}  // namespace brevant::memory
