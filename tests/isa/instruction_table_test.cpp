// SPDX-License-Identifier: MIT
#include "isa/instruction_table.h"

#include <gtest/gtest.h>

#include <set>

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
    ASSERT_EQ(InstructionLength(b0, b1), row ? row->length : 1) << std::hex << pair;
    ASSERT_EQ(InstructionCycles(b0, b1), row ? row->cycles : 0) << std::hex << pair;
  }
}

TEST(InstructionTable, GivesOneModeToEachPublishedModeOfAFamily) {
  std::map<std::string, Mode> modes;
  for (const auto& [bytes, row] : ReadPublishedMap()) {
    const int first = bytes.first == 0 ? bytes.second : bytes.first;
    const Entry entry =
        Decode(static_cast<std::uint8_t>(first), static_cast<std::uint8_t>(bytes.second));
    // Compare-and-branch, decrement-and-branch and bit tests share the published mode names.
    const bool branches_on_memory = row.mode.size() > 3 && row.mode.ends_with("REL");
    const std::string family = branches_on_memory ? row.mnemonic.substr(0, 2) : "";
    const bool is_bit = entry.mode() == Mode::BitSetClear;
    const auto known = modes.emplace(family + (is_bit ? "BIT" : row.mode), entry.mode()).first;
    EXPECT_EQ(known->second, entry.mode()) << row.mnemonic << ' ' << row.mode;
  }
  std::set<Mode> distinct;
  for (const auto& [published, mode] : modes) distinct.insert(mode);
  EXPECT_EQ(modes.size(), static_cast<std::size_t>(kModeCount - 1)) << "all modes but the illegal";
  EXPECT_EQ(distinct.size(), modes.size());
}

TEST(InstructionTable, PacksLengthModeAndMnemonicIntoOneWord) {
  EXPECT_EQ(Decode(0x9E, 0xD6).word(), 63u << 8 | 27u << 3 | 4u);  // LDA oprx16,SP
  EXPECT_EQ(Decode(0x9E, 0x70), kMainMap[0x9E]);
}

TEST(InstructionTable, FindsMnemonicsByExactName) {
  EXPECT_EQ(MnemonicIndex("ADC"), 0);
  EXPECT_EQ(MnemonicIndex("WAIT"), 114);
  EXPECT_TRUE(MnemonicIndex("NONE"));
  for (const char* unknown : {"adc", "", "AD", "ADCC", "ZZZ", "AAA"}) {
    EXPECT_FALSE(MnemonicIndex(unknown)) << unknown;
  }
}

TEST(InstructionTable, FindsTheFirstOpcodeOfAMnemonicAndMode) {
  const auto main = [](const char* name, Mode mode) {
    return FindOpcode(*MnemonicIndex(name), mode);
  };
  const auto page = [](const char* name, Mode mode) {
    return FindPageOpcode(*MnemonicIndex(name), mode);
  };
  EXPECT_EQ(main("BRSET", Mode::BitTestBranch), 0x00);
  EXPECT_EQ(main("BCLR", Mode::BitSetClear), 0x11);
  EXPECT_EQ(page("SUB", Mode::Stack16), 0xD0);
  EXPECT_EQ(page("SUB", Mode::Stack8), 0xE0);
  EXPECT_EQ(page("STX", Mode::Stack8), 0xEF);
  EXPECT_EQ(page("NEG", Mode::Stack8), 0x60);
  EXPECT_FALSE(main("NEG", Mode::Extended));
  EXPECT_FALSE(page("JMP", Mode::Stack8));
  EXPECT_FALSE(main("NONE", Mode::Inherent));
}

}  // namespace
}  // namespace brevant::isa
