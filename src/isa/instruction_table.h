// SPDX-License-Identifier: MIT
// The one description of the HC08 instruction set: mnemonics, opcode maps, lengths and cycles.
// Disassembler, assembler, stepping and the simulator all decode with it.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace brevant::isa {

// The codes are part of an entry's packing; see Entry.
enum class Mode : std::uint8_t {
  BitTestBranch = 0,
  BitSetClear,
  CompareBranchDirect,
  CompareBranchImmediate,
  CompareBranchIndexed8PostInc,
  CompareBranchIndexedPostInc,
  CompareBranchStack8,
  DecBranchDirect,
  DecBranchRegister,
  DecBranchIndexed,
  DecBranchIndexed8,
  DecBranchStack8,
  Direct,
  Extended,
  Immediate,
  Immediate16,
  Inherent,
  Indexed,
  Indexed8,
  Indexed16,
  MoveDirectDirect,
  MoveDirectPostInc,
  MoveImmediateDirect,
  MovePostIncDirect,
  Illegal,
  Relative,
  Stack8,
  Stack16,
};

inline constexpr int kMnemonicCount = 115;
inline constexpr std::uint8_t kPagePrefix = 0x9E;

// One opcode: bits 0-2 length in bytes (prefix included), bits 3-7 mode, bits 8-15 mnemonic index.
class Entry {
 public:
  constexpr Entry() = default;
  constexpr Entry(int mnemonic, Mode mode, int length)
      : word_(static_cast<std::uint32_t>(mnemonic) << 8 | static_cast<std::uint32_t>(mode) << 3 |
              static_cast<std::uint32_t>(length)) {}
  constexpr int length() const { return static_cast<int>(word_ & 7); }
  constexpr Mode mode() const { return static_cast<Mode>((word_ >> 3) & 31); }
  constexpr int mnemonic() const { return static_cast<int>((word_ >> 8) & 255); }
  constexpr bool illegal() const { return mode() == Mode::Illegal; }
  constexpr std::uint32_t word() const { return word_; }
  constexpr bool operator==(const Entry&) const = default;

 private:
  std::uint32_t word_ = 0;
};

// Index of an upper-case mnemonic, 0 ("ADC") to 114 ("WAIT").
std::optional<int> MnemonicIndex(std::string_view name);
std::string_view MnemonicName(int index);

// b1 is the byte after b0 in memory; it matters only when b0 is the page prefix.
Entry Decode(std::uint8_t b0, std::uint8_t b1);
// 1 to 4; an illegal opcode is one byte long.
int InstructionLength(std::uint8_t b0, std::uint8_t b1);
// Bus cycles; 0 for an illegal opcode.
int InstructionCycles(std::uint8_t b0, std::uint8_t b1);

// First opcode of the main map with this mnemonic and mode; of the page, the byte after the prefix.
std::optional<std::uint8_t> FindOpcode(int mnemonic, Mode mode);
std::optional<std::uint8_t> FindPageOpcode(int mnemonic, Mode mode);

}  // namespace brevant::isa
