// SPDX-License-Identifier: MIT
// SDCC's relocated listing (.rst) of one module. The compiler puts each line of C in front of its
// code as a comment ";path:line: text", with the path that it was given. That is more than the
// debug file knows: there a line has one address for each block only, the last one.
//
// Columns: address 3 to 6, bytes from 8 on, cycles "[ 3]" from 22 on (instructions only), line
// number up to 30, text from 32 on; a label is text up to ':' behind an address.
//
// A comment belongs to the code of its own function: the closing line of one that ends without a
// return (__naked) has none, and is not carried over to the next.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "base/address.h"

namespace brevant::symbols {

struct SdccListing {
  struct CLine {
    base::Address address = 0;  // of the first instruction after the comment
    std::uint32_t line = 0;
    std::size_t path = 0;  // index into paths
  };
  std::vector<std::string> paths;
  std::vector<CLine> c_lines;
  std::unordered_map<std::string, base::Address> labels;
  // The assembler line of each instruction.
  std::unordered_map<base::Address, std::uint32_t> instructions;
};

SdccListing ParseSdccListing(std::string_view listing);

}  // namespace brevant::symbols
