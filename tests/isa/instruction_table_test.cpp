// SPDX-License-Identifier: MIT
#include "isa/instruction_table.h"

#include <gtest/gtest.h>

#include "isa/opcode_rows.h"

namespace brevant::isa {
namespace {

const PublishedOpcode* Published(const PublishedMap& map, int b0, int b1) {
  const auto found = map.find(b0 == kPagePrefix ? std::pair(b0, b1) : std::pair(0, b0));
  return found == map.end() ? nullptr : &found->second;
}

TEST(InstructionTable, EqualsThePublishedOpcodeMapForEveryPairOfFirstBytes) {
  const PublishedMap published = ReadPublishedMap();
  ASSERT_EQ(published.size(), 290u);
  for (int pair = 0; pair < 0x10000; ++pair) {
    const auto b0 = static_cast<std::uint8_t>(pair >> 8);
    const auto b1 = static_cast<std::uint8_t>(pair & 0xFF);
    const PublishedOpcode* row = Published(published, b0, b1);
    const Entry entry = Decode(b0, b1);
    std::string name(MnemonicName(entry.mnemonic()));
    if (entry.mode() == Mode::BitTestBranch || entry.mode() == Mode::BitSetClear) {
      name += static_cast<char>('0' + ((b0 >> 1) & 7));
    }
    ASSERT_EQ(name, row ? row->mnemonic : "NONE") << std::hex << pair;
    ASSERT_EQ(entry.illegal(), row == nullptr) << std::hex << pair;
    ASSERT_EQ(InstructionLength(b0, b1), row ? row->length : 1) << std::hex << pair;
    ASSERT_EQ(InstructionCycles(b0, b1), row ? row->cycles : 0) << std::hex << pair;
  }
}

}  // namespace
}  // namespace brevant::isa
