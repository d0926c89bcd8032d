// SPDX-License-Identifier: MIT
// A function of the program, where the tool chain says where it begins and ends. Rests on the
// types.
#pragma once

#include <string>
#include <vector>

#include "base/address.h"
#include "symbols/variable.h"

namespace brevant::symbols {

struct Function {
  std::string name;    // as in the symbol table
  std::string module;  // that defines it; empty: not told
  base::Address first = 0;
  base::Address last = 0;  // its last byte
  bool is_interrupt = false;
  TypeId result = kUnknownType;
  std::vector<Variable> locals = {};  // with its parameters
};

}  // namespace brevant::symbols
