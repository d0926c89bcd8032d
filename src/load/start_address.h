// SPDX-License-Identifier: MIT
// Where the program counter goes after a reset: to the loaded image's entry address, else to the PC
// of the last macro, else to the reset vector.
#pragma once

#include <optional>

#include "base/address.h"

namespace brevant::load {

struct StartAddress {
  bool EntryFromImage = false;  // the last load met an end record with an entry address
  base::Address LoadEntryAddress = 0;
  bool PcFromMacro = false;  // the last macro set the PC
  base::Address MacroPc = 0;

  // Nothing means: take the reset vector.
  std::optional<base::Address> AfterReset() const {
    if (EntryFromImage) return LoadEntryAddress;
    if (PcFromMacro) return MacroPc;
    return std::nullopt;
  }
};

}  // namespace brevant::load
