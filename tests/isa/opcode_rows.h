// SPDX-License-Identifier: MIT
// The published opcode map (opcodes.tsv), read for the tests that compare with it.
#pragma once

#include <cstdint>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <utility>

namespace brevant::isa {

struct PublishedOpcode {
  std::string mnemonic;  // bit instructions carry their bit number: "BRSET3"
  std::string mode;
  int length = 0;
  int cycles = 0;
  std::string flags;  // VHINZC: - kept, 0 1, * computed
};

// By prefix (0 or 0x9E) and opcode; illegal opcodes have no row.
using PublishedMap = std::map<std::pair<int, int>, PublishedOpcode>;

inline PublishedMap ReadPublishedMap() {
  std::ifstream file(BREVANT_TEST_DATA "/isa/opcodes.tsv");
  PublishedMap rows;
  std::string line;
  std::getline(file, line);
  while (std::getline(file, line)) {
    std::istringstream fields(line);
    std::string page;
    std::string opcode;
    PublishedOpcode row;
    fields >> page >> opcode >> row.mnemonic >> row.mode >> row.length >> row.cycles >> row.flags;
    rows[{page == "-" ? 0 : std::stoi(page, nullptr, 16), std::stoi(opcode, nullptr, 16)}] = row;
  }
  return rows;
}

}  // namespace brevant::isa
