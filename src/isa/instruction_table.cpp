// SPDX-License-Identifier: MIT
#include "isa/instruction_table.h"

namespace brevant::isa {
namespace {

// What the published CPU08 opcode map says about the tables as a whole.
template <std::size_t N>
constexpr int LegalCount(const std::array<Entry, N>& map) {
  return static_cast<int>(
      std::count_if(map.begin(), map.end(), [](Entry entry) { return !entry.illegal(); }));
}

constexpr bool IllegalExactly(std::initializer_list<int> opcodes) {
  return LegalCount(kMainMap) + static_cast<int>(opcodes.size()) == 256 &&
         std::all_of(opcodes.begin(), opcodes.end(), [](int opcode) {
           return kMainMap[static_cast<std::size_t>(opcode)].illegal();
         });
}

constexpr bool IllegalPageExactly(std::initializer_list<int> seconds) {
  return LegalCount(kPageMap) + static_cast<int>(seconds.size()) == 48 &&
         std::all_of(seconds.begin(), seconds.end(), [](int second) {
           return kPageMap[PageIndex(static_cast<std::uint8_t>(second)).value()].illegal();
         });
}

constexpr bool EveryMnemonicIsUsed() {
  std::array<bool, kMnemonicCount> used{};
  for (Entry entry : kMainMap) used[static_cast<std::size_t>(entry.mnemonic())] = true;
  for (Entry entry : kPageMap) used[static_cast<std::size_t>(entry.mnemonic())] = true;
  return std::all_of(used.begin(), used.end(), [](bool is_used) { return is_used; });
}

// An entry is illegal exactly when its name, its cycles and its length say so.
template <std::size_t N>
constexpr bool Consistent(const std::array<Entry, N>& map, const std::array<OpcodeRow, N>& rows,
                          int prefix_length) {
  for (std::size_t i = 0; i < N; ++i) {
    const bool none = MnemonicName(map[i].mnemonic()) == "NONE";
    if (map[i].illegal() != none || (rows[i].cycles == 0) != none) return false;
    if (map[i].length() < (none ? 1 : 1 + prefix_length) || map[i].length() > 4) return false;
  }
  return true;
}

static_assert(std::is_sorted(kMnemonics.begin(), kMnemonics.end()));
static_assert(EveryMnemonicIsUsed());
static_assert(IllegalExactly({0x32, 0x3E, 0x82, 0x8D, 0x96, 0x9E, 0xAC}));
static_assert(IllegalPageExactly({0x62, 0x65, 0x6E, 0xDC, 0xDD, 0xEC, 0xED}));
static_assert(Consistent(kMainMap, kOpcodeRows.main, 0));
static_assert(Consistent(kPageMap, kOpcodeRows.page, 1));

template <std::size_t N>
std::optional<std::size_t> Find(const std::array<Entry, N>& map, int mnemonic, Mode mode) {
  for (std::size_t i = 0; i < N; ++i) {
    if (map[i].mnemonic() == mnemonic && map[i].mode() == mode) return i;
  }
  return std::nullopt;
}

}  // namespace

std::optional<std::uint8_t> FindOpcode(int mnemonic, Mode mode) {
  const auto index = Find(kMainMap, mnemonic, mode);
  if (!index) return std::nullopt;
  return static_cast<std::uint8_t>(*index);
}

std::optional<std::uint8_t> FindPageOpcode(int mnemonic, Mode mode) {
  const auto index = Find(kPageMap, mnemonic, mode);
  if (!index) return std::nullopt;
  // Row 0 is 0x60-0x6F; rows 1 and 2 follow each other at 0xD0-0xEF.
  return static_cast<std::uint8_t>(*index < 16 ? 0x60 + *index : 0xC0 + *index);
}

}  // namespace brevant::isa
