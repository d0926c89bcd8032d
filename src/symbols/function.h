// SPDX-License-Identifier: MIT
// A function of the program, where the tool chain says where it begins and ends.
#pragma once

#include <string>

#include "base/address.h"

namespace brevant::symbols {

struct Function {
  std::string name;    // as in the symbol table
  std::string module;  // that defines it; empty: not told
  base::Address first = 0;
  base::Address last = 0;  // its last byte
};

}  // namespace brevant::symbols
