// SPDX-License-Identifier: MIT
// The one description of the HC08 instruction set: mnemonics, opcode maps, lengths and cycles.
// Disassembler, assembler, stepping and the simulator all decode with it. Everything is usable at
// compile time; instruction_table.cpp proves that every mnemonic is used.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace brevant::isa {

// The codes are part of an entry's packing; see Entry. b0 is the first byte of the instruction.
enum class Mode : std::uint8_t {
  BitTestBranch = 0,             // BRSET/BRCLR n,opr8a,rel   n is bits 1-3 of b0
  BitSetClear,                   // BSET/BCLR n,opr8a
  CompareBranchDirect,           // CBEQ opr8a,rel
  CompareBranchImmediate,        // CBEQA/CBEQX #opr8i,rel
  CompareBranchIndexed8PostInc,  // CBEQ oprx8,X+,rel
  CompareBranchIndexedPostInc,   // CBEQ ,X+,rel
  CompareBranchStack8,           // CBEQ oprx8,SP,rel
  DecBranchDirect,               // DBNZ opr8a,rel
  DecBranchRegister,             // DBNZA/DBNZX rel
  DecBranchIndexed,              // DBNZ ,X,rel
  DecBranchIndexed8,             // DBNZ oprx8,X,rel
  DecBranchStack8,               // DBNZ oprx8,SP,rel
  Direct,                        // opr8a
  Extended,                      // opr16a
  Immediate,                     // #opr8i
  Immediate16,                   // #opr16i (LDHX, CPHX)
  Inherent,
  Indexed,              // ,X
  Indexed8,             // oprx8,X
  Indexed16,            // oprx16,X
  MoveDirectDirect,     // MOV opr8a,opr8a
  MoveDirectPostInc,    // MOV opr8a,X+
  MoveImmediateDirect,  // MOV #opr8i,opr8a
  MovePostIncDirect,    // MOV ,X+,opr8a
  Illegal,              // not an instruction ("NONE")
  Relative,             // rel
  Stack8,               // oprx8,SP
  Stack16,              // oprx16,SP
};

inline constexpr int kModeCount = 28;
inline constexpr int kMnemonicCount = 115;
inline constexpr std::uint8_t kPagePrefix = 0x9E;

// Bytes of a whole instruction by mode, the page prefix included.
inline constexpr std::array<std::uint8_t, kModeCount> kModeLengths{
    3, 2, 3, 3, 3, 2, 4, 3, 2, 2, 3, 4, 2, 3, 2, 3, 1, 1, 2, 3, 3, 2, 3, 2, 1, 2, 3, 4};

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

// In ascending byte order; a name's place is its mnemonic index. "NONE" names the illegal entries.
// clang-format off
inline constexpr std::array<std::string_view, kMnemonicCount> kMnemonics{
    "ADC", "ADD", "AIS", "AIX", "AND", "ASR", "ASRA", "ASRX", "BCC", "BCLR", "BCS", "BEQ", "BGE",
    "BGT", "BHCC", "BHCS", "BHI", "BIH", "BIL", "BIT", "BLE", "BLS", "BLT", "BMC", "BMI", "BMS",
    "BNE", "BPL", "BRA", "BRCLR", "BRN", "BRSET", "BSET", "BSR", "CBEQ", "CBEQA", "CBEQX", "CLC",
    "CLI", "CLR", "CLRA", "CLRH", "CLRX", "CMP", "COM", "COMA", "COMX", "CPHX", "CPX", "DAA",
    "DBNZ", "DBNZA", "DBNZX", "DEC", "DECA", "DECX", "DIV", "EOR", "INC", "INCA", "INCX", "JMP",
    "JSR", "LDA", "LDHX", "LDX", "LSL", "LSLA", "LSLX", "LSR", "LSRA", "LSRX", "MOV", "MUL", "NEG",
    "NEGA", "NEGX", "NONE", "NOP", "NSA", "ORA", "PSHA", "PSHH", "PSHX", "PULA", "PULH", "PULX",
    "ROL", "ROLA", "ROLX", "ROR", "RORA", "RORX", "RSP", "RTI", "RTS", "SBC", "SEC", "SEI", "STA",
    "STHX", "STOP", "STX", "SUB", "SWI", "TAP", "TAX", "TPA", "TST", "TSTA", "TSTX", "TSX", "TXA",
    "TXS", "WAIT",
};
// clang-format on

// Index of an upper-case mnemonic, 0 ("ADC") to 114 ("WAIT").
constexpr std::optional<int> MnemonicIndex(std::string_view name) {
  const auto* const found = std::lower_bound(kMnemonics.begin(), kMnemonics.end(), name);
  if (found == kMnemonics.end() || *found != name) return std::nullopt;
  return static_cast<int>(found - kMnemonics.begin());
}
constexpr std::string_view MnemonicName(int index) {
  return kMnemonics[static_cast<std::size_t>(index)];
}

// One opcode as the reference manual's map gives it; the length follows from the mode.
struct OpcodeRow {
  std::string_view mnemonic;
  Mode mode;
  std::uint8_t cycles;  // bus cycles, a branch taken or not; 0 for an illegal opcode
};

struct OpcodeRows {
  std::array<OpcodeRow, 256> main;
  // Opcodes behind the page prefix: second bytes 0x60-0x6F, 0xD0-0xDF, 0xE0-0xEF.
  std::array<OpcodeRow, 48> page;
};

// The operands' abbreviations are those of the reference manual; CB_ and DB_ mark the
// compare-and-branch and decrement-and-branch forms.
inline constexpr OpcodeRows kOpcodeRows = [] {
  constexpr Mode BTB = Mode::BitTestBranch, BSC = Mode::BitSetClear;
  constexpr Mode CB_DIR = Mode::CompareBranchDirect, CB_IMM = Mode::CompareBranchImmediate;
  constexpr Mode CB_IX1P = Mode::CompareBranchIndexed8PostInc;
  constexpr Mode CB_IXP = Mode::CompareBranchIndexedPostInc, CB_SP1 = Mode::CompareBranchStack8;
  constexpr Mode DB_DIR = Mode::DecBranchDirect, DB_INH = Mode::DecBranchRegister;
  constexpr Mode DB_IX = Mode::DecBranchIndexed, DB_IX1 = Mode::DecBranchIndexed8;
  constexpr Mode DB_SP1 = Mode::DecBranchStack8;
  constexpr Mode INH = Mode::Inherent, IMM = Mode::Immediate, IMM16 = Mode::Immediate16;
  constexpr Mode DIR = Mode::Direct, EXT = Mode::Extended, REL = Mode::Relative;
  constexpr Mode IX = Mode::Indexed, IX1 = Mode::Indexed8, IX2 = Mode::Indexed16;
  constexpr Mode SP1 = Mode::Stack8, SP2 = Mode::Stack16, ILL = Mode::Illegal;
  constexpr Mode DD = Mode::MoveDirectDirect, DIXP = Mode::MoveDirectPostInc;
  constexpr Mode IMD = Mode::MoveImmediateDirect, IXPD = Mode::MovePostIncDirect;
  // clang-format off
  return OpcodeRows{{{
    // 0x
    {"BRSET", BTB, 5}, {"BRCLR", BTB, 5}, {"BRSET", BTB, 5}, {"BRCLR", BTB, 5},
    {"BRSET", BTB, 5}, {"BRCLR", BTB, 5}, {"BRSET", BTB, 5}, {"BRCLR", BTB, 5},
    {"BRSET", BTB, 5}, {"BRCLR", BTB, 5}, {"BRSET", BTB, 5}, {"BRCLR", BTB, 5},
    {"BRSET", BTB, 5}, {"BRCLR", BTB, 5}, {"BRSET", BTB, 5}, {"BRCLR", BTB, 5},
    // 1x
    {"BSET", BSC, 4}, {"BCLR", BSC, 4}, {"BSET", BSC, 4}, {"BCLR", BSC, 4},
    {"BSET", BSC, 4}, {"BCLR", BSC, 4}, {"BSET", BSC, 4}, {"BCLR", BSC, 4},
    {"BSET", BSC, 4}, {"BCLR", BSC, 4}, {"BSET", BSC, 4}, {"BCLR", BSC, 4},
    {"BSET", BSC, 4}, {"BCLR", BSC, 4}, {"BSET", BSC, 4}, {"BCLR", BSC, 4},
    // 2x
    {"BRA", REL, 3},  {"BRN", REL, 3},  {"BHI", REL, 3}, {"BLS", REL, 3},
    {"BCC", REL, 3},  {"BCS", REL, 3},  {"BNE", REL, 3}, {"BEQ", REL, 3},
    {"BHCC", REL, 3}, {"BHCS", REL, 3}, {"BPL", REL, 3}, {"BMI", REL, 3},
    {"BMC", REL, 3},  {"BMS", REL, 3},  {"BIL", REL, 3}, {"BIH", REL, 3},
    // 3x
    {"NEG", DIR, 4}, {"CBEQ", CB_DIR, 5}, {"NONE", ILL, 0}, {"COM", DIR, 4},
    {"LSR", DIR, 4}, {"STHX", DIR, 4},    {"ROR", DIR, 4},  {"ASR", DIR, 4},
    {"LSL", DIR, 4}, {"ROL", DIR, 4},     {"DEC", DIR, 4},  {"DBNZ", DB_DIR, 5},
    {"INC", DIR, 4}, {"TST", DIR, 3},     {"NONE", ILL, 0}, {"CLR", DIR, 3},
    // 4x
    {"NEGA", INH, 1}, {"CBEQA", CB_IMM, 4}, {"MUL", INH, 5},  {"COMA", INH, 1},
    {"LSRA", INH, 1}, {"LDHX", IMM16, 3},   {"RORA", INH, 1}, {"ASRA", INH, 1},
    {"LSLA", INH, 1}, {"ROLA", INH, 1},     {"DECA", INH, 1}, {"DBNZA", DB_INH, 3},
    {"INCA", INH, 1}, {"TSTA", INH, 1},     {"MOV", DD, 5},   {"CLRA", INH, 1},
    // 5x
    {"NEGX", INH, 1}, {"CBEQX", CB_IMM, 4}, {"DIV", INH, 7},  {"COMX", INH, 1},
    {"LSRX", INH, 1}, {"LDHX", DIR, 4},     {"RORX", INH, 1}, {"ASRX", INH, 1},
    {"LSLX", INH, 1}, {"ROLX", INH, 1},     {"DECX", INH, 1}, {"DBNZX", DB_INH, 3},
    {"INCX", INH, 1}, {"TSTX", INH, 1},     {"MOV", DIXP, 4}, {"CLRX", INH, 1},
    // 6x
    {"NEG", IX1, 4}, {"CBEQ", CB_IX1P, 5}, {"NSA", INH, 3}, {"COM", IX1, 4},
    {"LSR", IX1, 4}, {"CPHX", IMM16, 3},   {"ROR", IX1, 4}, {"ASR", IX1, 4},
    {"LSL", IX1, 4}, {"ROL", IX1, 4},      {"DEC", IX1, 4}, {"DBNZ", DB_IX1, 5},
    {"INC", IX1, 4}, {"TST", IX1, 3},      {"MOV", IMD, 4}, {"CLR", IX1, 3},
    // 7x
    {"NEG", IX, 3}, {"CBEQ", CB_IXP, 4}, {"DAA", INH, 2},  {"COM", IX, 3},
    {"LSR", IX, 3}, {"CPHX", DIR, 4},    {"ROR", IX, 3},   {"ASR", IX, 3},
    {"LSL", IX, 3}, {"ROL", IX, 3},      {"DEC", IX, 3},   {"DBNZ", DB_IX, 4},
    {"INC", IX, 3}, {"TST", IX, 2},      {"MOV", IXPD, 4}, {"CLR", IX, 2},
    // 8x
    {"RTI", INH, 7},  {"RTS", INH, 4},  {"NONE", ILL, 0}, {"SWI", INH, 9},
    {"TAP", INH, 2},  {"TPA", INH, 1},  {"PULA", INH, 2}, {"PSHA", INH, 2},
    {"PULX", INH, 2}, {"PSHX", INH, 2}, {"PULH", INH, 2}, {"PSHH", INH, 2},
    {"CLRH", INH, 1}, {"NONE", ILL, 0}, {"STOP", INH, 1}, {"WAIT", INH, 1},
    // 9x
    {"BGE", REL, 3}, {"BLT", REL, 3}, {"BGT", REL, 3},  {"BLE", REL, 3},
    {"TXS", INH, 2}, {"TSX", INH, 2}, {"NONE", ILL, 0}, {"TAX", INH, 1},
    {"CLC", INH, 1}, {"SEC", INH, 1}, {"CLI", INH, 2},  {"SEI", INH, 2},
    {"RSP", INH, 1}, {"NOP", INH, 1}, {"NONE", ILL, 0}, {"TXA", INH, 1},
    // Ax
    {"SUB", IMM, 2},  {"CMP", IMM, 2}, {"SBC", IMM, 2}, {"CPX", IMM, 2},
    {"AND", IMM, 2},  {"BIT", IMM, 2}, {"LDA", IMM, 2}, {"AIS", IMM, 2},
    {"EOR", IMM, 2},  {"ADC", IMM, 2}, {"ORA", IMM, 2}, {"ADD", IMM, 2},
    {"NONE", ILL, 0}, {"BSR", REL, 4}, {"LDX", IMM, 2}, {"AIX", IMM, 2},
    // Bx
    {"SUB", DIR, 3}, {"CMP", DIR, 3}, {"SBC", DIR, 3}, {"CPX", DIR, 3},
    {"AND", DIR, 3}, {"BIT", DIR, 3}, {"LDA", DIR, 3}, {"STA", DIR, 3},
    {"EOR", DIR, 3}, {"ADC", DIR, 3}, {"ORA", DIR, 3}, {"ADD", DIR, 3},
    {"JMP", DIR, 2}, {"JSR", DIR, 4}, {"LDX", DIR, 3}, {"STX", DIR, 3},
    // Cx
    {"SUB", EXT, 4}, {"CMP", EXT, 4}, {"SBC", EXT, 4}, {"CPX", EXT, 4},
    {"AND", EXT, 4}, {"BIT", EXT, 4}, {"LDA", EXT, 4}, {"STA", EXT, 4},
    {"EOR", EXT, 4}, {"ADC", EXT, 4}, {"ORA", EXT, 4}, {"ADD", EXT, 4},
    {"JMP", EXT, 3}, {"JSR", EXT, 5}, {"LDX", EXT, 4}, {"STX", EXT, 4},
    // Dx
    {"SUB", IX2, 4}, {"CMP", IX2, 4}, {"SBC", IX2, 4}, {"CPX", IX2, 4},
    {"AND", IX2, 4}, {"BIT", IX2, 4}, {"LDA", IX2, 4}, {"STA", IX2, 4},
    {"EOR", IX2, 4}, {"ADC", IX2, 4}, {"ORA", IX2, 4}, {"ADD", IX2, 4},
    {"JMP", IX2, 4}, {"JSR", IX2, 6}, {"LDX", IX2, 4}, {"STX", IX2, 4},
    // Ex
    {"SUB", IX1, 3}, {"CMP", IX1, 3}, {"SBC", IX1, 3}, {"CPX", IX1, 3},
    {"AND", IX1, 3}, {"BIT", IX1, 3}, {"LDA", IX1, 3}, {"STA", IX1, 3},
    {"EOR", IX1, 3}, {"ADC", IX1, 3}, {"ORA", IX1, 3}, {"ADD", IX1, 3},
    {"JMP", IX1, 3}, {"JSR", IX1, 5}, {"LDX", IX1, 3}, {"STX", IX1, 3},
    // Fx
    {"SUB", IX, 2}, {"CMP", IX, 2}, {"SBC", IX, 2}, {"CPX", IX, 2},
    {"AND", IX, 2}, {"BIT", IX, 2}, {"LDA", IX, 2}, {"STA", IX, 2},
    {"EOR", IX, 2}, {"ADC", IX, 2}, {"ORA", IX, 2}, {"ADD", IX, 2},
    {"JMP", IX, 2}, {"JSR", IX, 4}, {"LDX", IX, 2}, {"STX", IX, 2},
  }}, {{
    // 9E 6x
    {"NEG", SP1, 5}, {"CBEQ", CB_SP1, 6}, {"NONE", ILL, 0}, {"COM", SP1, 5},
    {"LSR", SP1, 5}, {"NONE", ILL, 0},    {"ROR", SP1, 5},  {"ASR", SP1, 5},
    {"LSL", SP1, 5}, {"ROL", SP1, 5},     {"DEC", SP1, 5},  {"DBNZ", DB_SP1, 6},
    {"INC", SP1, 5}, {"TST", SP1, 4},     {"NONE", ILL, 0}, {"CLR", SP1, 4},
    // 9E Dx
    {"SUB", SP2, 5},  {"CMP", SP2, 5},  {"SBC", SP2, 5}, {"CPX", SP2, 5},
    {"AND", SP2, 5},  {"BIT", SP2, 5},  {"LDA", SP2, 5}, {"STA", SP2, 5},
    {"EOR", SP2, 5},  {"ADC", SP2, 5},  {"ORA", SP2, 5}, {"ADD", SP2, 5},
    {"NONE", ILL, 0}, {"NONE", ILL, 0}, {"LDX", SP2, 5}, {"STX", SP2, 5},
    // 9E Ex
    {"SUB", SP1, 4},  {"CMP", SP1, 4},  {"SBC", SP1, 4}, {"CPX", SP1, 4},
    {"AND", SP1, 4},  {"BIT", SP1, 4},  {"LDA", SP1, 4}, {"STA", SP1, 4},
    {"EOR", SP1, 4},  {"ADC", SP1, 4},  {"ORA", SP1, 4}, {"ADD", SP1, 4},
    {"NONE", ILL, 0}, {"NONE", ILL, 0}, {"LDX", SP1, 4}, {"STX", SP1, 4},
  }}};
  // clang-format on
}();

namespace internal {
template <std::size_t N>
constexpr std::array<Entry, N> PackEntries(const std::array<OpcodeRow, N>& rows) {
  std::array<Entry, N> entries;
  for (std::size_t i = 0; i < N; ++i) {
    // A name that is not in the list stops the compilation here.
    entries[i] = Entry(MnemonicIndex(rows[i].mnemonic).value(), rows[i].mode,
                       kModeLengths[static_cast<std::size_t>(rows[i].mode)]);
  }
  return entries;
}
}  // namespace internal

// Indexed by the first byte; the page prefix itself stands as illegal.
inline constexpr auto kMainMap = internal::PackEntries(kOpcodeRows.main);
// Indexed by PageIndex of the second byte.
inline constexpr auto kPageMap = internal::PackEntries(kOpcodeRows.page);

inline constexpr Entry kIllegalEntry = kMainMap[kPagePrefix];

// Where the page keeps the opcode with this second byte; nothing outside the three rows.
constexpr std::optional<std::size_t> PageIndex(std::uint8_t second) {
  switch (second >> 4) {
    case 0x6:
      return second & 0x0F;
    case 0xD:
      return second & 0x1F;
    case 0xE:
      return second & 0x2F;
    default:
      return std::nullopt;
  }
}

// b1 is the byte after b0 in memory; it matters only when b0 is the page prefix.
constexpr Entry Decode(std::uint8_t b0, std::uint8_t b1) {
  if (b0 != kPagePrefix) return kMainMap[b0];
  const auto page = PageIndex(b1);
  return page ? kPageMap[*page] : kIllegalEntry;
}
// Bus cycles; 0 for an illegal opcode.
constexpr int InstructionCycles(std::uint8_t b0, std::uint8_t b1) {
  if (b0 != kPagePrefix) return kOpcodeRows.main[b0].cycles;
  const auto page = PageIndex(b1);
  return page ? kOpcodeRows.page[*page].cycles : 0;
}
// 1 to 4; an illegal opcode is one byte long.
constexpr int InstructionLength(std::uint8_t b0, std::uint8_t b1) {
  return Decode(b0, b1).length();
}

// First opcode of the main map with this mnemonic and mode; of the page, the byte after the prefix.
std::optional<std::uint8_t> FindOpcode(int mnemonic, Mode mode);
std::optional<std::uint8_t> FindPageOpcode(int mnemonic, Mode mode);

}  // namespace brevant::isa
