// SPDX-License-Identifier: MIT
#include "isa/assembler.h"

#include <algorithm>
#include <initializer_list>
#include <span>
#include <vector>

#include "base/file_names.h"
#include "base/text_format.h"
#include "base/text_number.h"
#include "isa/instruction_table.h"

namespace brevant::isa {
namespace {

using base::Address;
using base::HighByte;
using base::LowByte;

// The words before the comment, in upper case.
std::vector<std::string> SplitWords(std::string_view text) {
  constexpr std::string_view kBetween = " \t\n\v\f\r,";
  text = text.substr(0, text.find(';'));
  std::vector<std::string> words;
  for (std::size_t start = text.find_first_not_of(kBetween); start != std::string_view::npos;
       start = text.find_first_not_of(kBetween)) {
    text.remove_prefix(start);
    const std::size_t length = std::min(text.find_first_of(kBetween), text.size());
    words.push_back(base::UpperCase(text.substr(0, length)));
    text.remove_prefix(length);
  }
  return words;
}

constexpr bool IsPageMode(Mode mode) {
  return mode == Mode::CompareBranchStack8 || mode == Mode::DecBranchStack8 ||
         mode == Mode::Stack8 || mode == Mode::Stack16;
}

struct Code {
  std::array<std::uint8_t, 4> bytes{};
  std::size_t length = 0;
};

using Result = std::optional<Code>;
using Words = std::initializer_list<std::string_view>;

// Tries the operand forms that a mnemonic has in a fixed order; the first that the words' shapes
// and the first value's size fit wins, and what does not fit after that fails the line.
class OperandForms {
 public:
  // why becomes a sentence when Parse fails.
  OperandForms(int mnemonic, Address address, const SymbolNames& symbols, std::string& why)
      : mnemonic_(mnemonic), address_(address), symbols_(symbols), why_(why) {}

  Result Parse(std::span<const std::string> operands) const {
    switch (operands.size()) {
      case 0:
        return Emit(Mode::Inherent, {});
      case 1:
        return One(operands[0]);
      case 2:
        return Two(operands[0], operands[1]);
      case 3:
        return Three(operands[0], operands[1], operands[2]);
      default:
        return Fail(kNoSuchForm);
    }
  }

 private:
  static constexpr const char* kNoSuchForm = "This instruction does not take such operands.";

  // The first thing that is wrong is what the user is told.
  std::nullopt_t Fail(std::string_view why) const {
    if (why_.empty()) why_ = why;
    return std::nullopt;
  }
  std::nullopt_t TooLarge(std::string_view word) const {
    return Fail(base::Format("%s does not fit into a byte, which is all there is room for here.",
                             std::string(word)));
  }

  Result One(std::string_view a) const {
    if (a == "X" && Has(Mode::Indexed)) return Emit(Mode::Indexed, {});
    const auto value = Value(a);
    if (!value) return std::nullopt;
    const bool is_byte = *value < 0x100;
    if (a.starts_with('#')) {
      if (!is_byte && Has(Mode::Immediate) && !Has(Mode::Immediate16)) return TooLarge(a);
      return is_byte && Has(Mode::Immediate) ? EmitByte(Mode::Immediate, *value)
                                             : EmitWord(Mode::Immediate16, *value);
    }
    if (is_byte && Has(Mode::Direct)) return EmitByte(Mode::Direct, *value);
    // Every extended form has a direct one beside it, which small values have taken.
    if (Has(Mode::Extended)) return EmitWord(Mode::Extended, *value);
    if (Has(Mode::Direct)) return TooLarge(a);
    return Branch(FirstOf({Mode::Relative, Mode::DecBranchRegister}), {}, a);
  }

  Result Two(std::string_view a, std::string_view b) const {
    if (a == "X+" && Has(Mode::CompareBranchIndexedPostInc)) {
      return Branch(Mode::CompareBranchIndexedPostInc, {}, b);
    }
    if (a == "X" && Has(Mode::DecBranchIndexed)) return Branch(Mode::DecBranchIndexed, {}, b);
    if (a == "X+" && Has(Mode::MovePostIncDirect)) return Bytes(Mode::MovePostIncDirect, {b});
    const auto value = Value(a);
    if (!value) return std::nullopt;
    if (b == "X+" && Has(Mode::MoveDirectPostInc)) return Bytes(Mode::MoveDirectPostInc, {a});
    const bool is_byte = *value < 0x100;
    if (b == "X" && is_byte && Has(Mode::Indexed8)) return EmitByte(Mode::Indexed8, *value);
    if (b == "SP" && is_byte && Has(Mode::Stack8)) return EmitByte(Mode::Stack8, *value);
    if (b == "X" && !is_byte && Has(Mode::Indexed16)) return EmitWord(Mode::Indexed16, *value);
    if (b == "SP" && !is_byte && Has(Mode::Stack16)) return EmitWord(Mode::Stack16, *value);

    const bool immediate = a.starts_with('#');
    // The direct form comes first even behind a "#": CBEQ has no immediate form of its own.
    const auto branch = immediate ? FirstOf({Mode::CompareBranchDirect,
                                             Mode::CompareBranchImmediate, Mode::DecBranchDirect})
                                  : FirstOf({Mode::CompareBranchDirect, Mode::DecBranchDirect});
    if (branch) return Branch(branch, {a}, b);
    if (Has(Mode::BitSetClear)) return WithBit(*value, Bytes(Mode::BitSetClear, {b}));
    return Bytes(immediate ? FirstOf({Mode::MoveImmediateDirect, Mode::MoveDirectDirect})
                           : Mode::MoveDirectDirect,
                 {a, b});
  }

  Result Three(std::string_view a, std::string_view b, std::string_view c) const {
    const auto value = Value(a);
    if (!value) return std::nullopt;
    std::optional<Mode> branch;
    if (b == "X+") branch = FirstOf({Mode::CompareBranchIndexed8PostInc});
    if (b == "X") branch = FirstOf({Mode::DecBranchIndexed8});
    if (b == "SP") branch = FirstOf({Mode::CompareBranchStack8, Mode::DecBranchStack8});
    if (branch) return Branch(branch, {a}, c);
    return WithBit(*value, Branch(Mode::BitTestBranch, {b}, c));
  }

  std::optional<std::uint8_t> Opcode(Mode mode) const {
    return IsPageMode(mode) ? FindPageOpcode(mnemonic_, mode) : FindOpcode(mnemonic_, mode);
  }
  bool Has(Mode mode) const { return Opcode(mode).has_value(); }
  std::optional<Mode> FirstOf(std::initializer_list<Mode> modes) const {
    const auto* const found =
        std::find_if(modes.begin(), modes.end(), [this](Mode mode) { return Has(mode); });
    return found == modes.end() ? std::nullopt : std::optional(*found);
  }
  std::optional<std::uint32_t> Value(std::string_view word) const {
    const auto value = ParseOperandValue(word, symbols_);
    if (!value) {
      Fail(base::Format("%s is neither a hexadecimal number nor a symbol.", std::string(word)));
    }
    return value;
  }

  // Everything below fails when there is no mode or the mnemonic does not have it.
  Result Emit(std::optional<Mode> mode, std::initializer_list<std::uint8_t> operands) const {
    const auto opcode = mode ? Opcode(*mode) : std::nullopt;
    if (!opcode) return Fail(kNoSuchForm);
    Code result;
    if (IsPageMode(*mode)) Append(result, kPagePrefix);
    Append(result, *opcode);
    for (std::uint8_t operand : operands) Append(result, operand);
    return result;
  }
  Result EmitByte(Mode mode, std::uint32_t value) const { return Emit(mode, {LowByte(value)}); }
  Result EmitWord(Mode mode, std::uint32_t value) const {
    return Emit(mode, {HighByte(value), LowByte(value)});
  }

  // Words whose values must be bytes.
  Result Bytes(std::optional<Mode> mode, Words words) const {
    Result result = Emit(mode, {});
    for (std::string_view word : words) {
      const auto value = Value(word);
      if (!result || !value) return std::nullopt;
      if (*value >= 0x100) return TooLarge(word);
      Append(*result, LowByte(*value));
    }
    return result;
  }
  // Words whose values must be bytes, then the offset to the target.
  Result Branch(std::optional<Mode> mode, Words words, std::string_view target) const {
    Result result = Bytes(mode, words);
    const auto to = Value(target);
    if (!result || !to) return std::nullopt;
    const auto length = static_cast<Address>(result->length) + 1;
    const auto offset = static_cast<std::int32_t>(*to - address_ - length);
    if (offset < -128 || offset > 127) {
      return Fail(base::Format("%04x is out of reach: from here a branch gets to %04x to %04x.",
                               *to, base::Low16(address_ + length - 128),
                               base::Low16(address_ + length + 127)));
    }
    Append(*result, LowByte(static_cast<std::uint32_t>(offset)));
    return result;
  }
  // The opcodes found are those of bit 0; each further bit is two opcodes on.
  Result WithBit(std::uint32_t bit, Result result) const {
    if (!result) return result;
    if (bit >= 8) return Fail(base::Format("%x is no bit: they count from 0 to 7.", bit));
    result->bytes[0] = LowByte(result->bytes[0] + 2 * bit);
    return result;
  }
  static void Append(Code& code, std::uint8_t byte) { code.bytes[code.length++] = byte; }

  int mnemonic_;
  Address address_;
  const SymbolNames& symbols_;
  std::string& why_;
};

bool IsLetter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

}  // namespace

std::optional<Instruction> AssembleLine(std::string_view text, base::Address address,
                                        const SymbolNames& symbols, std::string* why) {
  std::string unheard;
  std::string& reason = why != nullptr ? *why : unheard;
  reason.clear();
  if (text.empty() || !IsLetter(text.front())) {
    reason = "A line begins with the name of its instruction.";
    return std::nullopt;
  }
  const std::vector<std::string> words = SplitWords(text);
  const auto mnemonic = MnemonicIndex(words.front());
  if (!mnemonic) {
    reason = words.front() + " is no instruction of the HC08.";
    return std::nullopt;
  }
  const auto code =
      OperandForms(*mnemonic, address, symbols, reason).Parse(std::span(words).subspan(1));
  if (!code) return std::nullopt;
  return InstructionAt(address, code->bytes);
}

std::optional<std::uint32_t> ParseOperandValue(std::string_view word, const SymbolNames& symbols) {
  if (word.starts_with('#') || word.starts_with('$')) word.remove_prefix(1);
  if (word.starts_with('$')) word.remove_prefix(1);
  if (base::IsHexField(word)) return base::ParseHex(word);
  return symbols.FindSymbolAddress(word);
}

std::string EditableText(std::string_view line) {
  constexpr std::size_t kAddressDigits = 6;
  constexpr std::size_t kSpacedLabelEnd = 15;
  line.remove_prefix(std::min(kAddressDigits, line.size()));
  const std::size_t tab = line.find('\t');
  const std::size_t colon = line.find(':');
  // Behind a long label stands one space in place of the tab; a colon behind a tab is an operand's.
  const bool spaced = colon >= kSpacedLabelEnd && colon < tab;
  const std::size_t start = spaced                          ? colon + 2
                            : tab == std::string_view::npos ? line.size()
                                                            : tab + 1;
  std::string text;
  for (char c : line.substr(std::min(start, line.size()))) {
    if (c == '\t') {
      text += "  ";
    } else {
      text += c;
    }
  }
  text.erase(text.find_last_not_of(' ') + 1);
  return text;
}

}  // namespace brevant::isa
