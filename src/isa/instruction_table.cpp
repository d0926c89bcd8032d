// SPDX-License-Identifier: MIT
#include "isa/instruction_table.h"

namespace brevant::isa {
namespace {

constexpr bool EveryMnemonicIsUsed() {
  std::array<bool, kMnemonicCount> used{};
  for (Entry entry : kMainMap) used[static_cast<std::size_t>(entry.mnemonic())] = true;
  for (Entry entry : kPageMap) used[static_cast<std::size_t>(entry.mnemonic())] = true;
  return std::all_of(used.begin(), used.end(), [](bool is_used) { return is_used; });
}

static_assert(std::is_sorted(kMnemonics.begin(), kMnemonics.end()));
static_assert(EveryMnemonicIsUsed());

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
