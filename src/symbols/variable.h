// SPDX-License-Identifier: MIT
// A variable of the program, where the tool chain says what it is and where it lives. Rests on the
// types.
#pragma once

#include <string>
#include <vector>

#include "base/address.h"
#include "symbols/types.h"

namespace brevant::symbols {

enum class Storage {
  Memory,     // at address
  Stack,      // at SP + 1 + offset, with SP as it is at the function's first instruction
  Registers,  // in registers for some of the function's instructions; it is not told for which
  Nowhere,    // the tool chain does not say
};

struct Variable {
  std::string name;         // as C spells it
  std::string module = {};  // of a static or a local
  TypeId type = kUnknownType;
  int size = 0;  // bytes
  Storage storage = Storage::Nowhere;
  base::Address address = 0;
  int offset = 0;
  std::vector<std::string> registers = {};  // "a", "x", "h": the least significant byte first
  // The block of the source that declares it, as the tool chain numbers it; often that of the
  // function instead.
  int block = 0;
};

}  // namespace brevant::symbols
