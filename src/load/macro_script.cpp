// SPDX-License-Identifier: MIT
#include "load/macro_script.h"

#include <array>
#include <string>
#include <vector>

#include "base/file_names.h"
#include "base/normalised_text.h"
#include "base/text_number.h"

namespace brevant::load {
namespace {

struct CommandRow {
  std::string_view name;
  MacroAction action;
  std::size_t operands;
  std::uint32_t value_mask;
};
constexpr std::array<CommandRow, 3> kCommands{{
    {"PC", MacroAction::SetPc, 1, 0},
    {"DMM.B", MacroAction::WriteByte, 2, 0xFF},
    {"DMM.W", MacroAction::WriteWord, 2, 0xFFFF},
}};

// Longest words, in the order command, first operand, second operand.
constexpr std::array<std::size_t, 3> kMaxWordLengths{11, 199, 7};

const CommandRow* FindCommand(std::string_view word) {
  for (const CommandRow& row : kCommands) {
    if (base::EqualIgnoringCase(row.name, word)) return &row;
  }
  return nullptr;
}

std::optional<std::uint32_t> Operand(std::string_view word, std::size_t position) {
  return base::ParseHexExactly(word, static_cast<int>(kMaxWordLengths.at(position)));
}

}  // namespace

std::optional<MacroCommand> ParseMacroLine(std::string_view line) {
  const std::string text = base::NormaliseText(line);
  const std::vector<std::string_view> words = base::SplitWords(text);
  const CommandRow* row = words.empty() ? nullptr : FindCommand(words[0]);
  if (!row || words.size() <= row->operands) return std::nullopt;
  const auto address = Operand(words[1], 1);
  const auto value = row->operands > 1 ? Operand(words[2], 2) : 0u;
  if (!address || !value) return std::nullopt;
  return MacroCommand{row->action, base::Low16(*address), *value & row->value_mask};
}

}  // namespace brevant::load
