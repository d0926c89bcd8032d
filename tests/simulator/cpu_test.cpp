// SPDX-License-Identifier: MIT
#include "simulator/cpu.h"

#include <gtest/gtest.h>

#include <array>
#include <random>
#include <set>

#include "isa/instruction_table.h"
#include "isa/opcode_rows.h"
#include "simulator/mcu_kit.h"

namespace brevant::simulator {
namespace {

// Bytes among which carries, zeros and overflows are frequent.
class BiasedBytes {
 public:
  std::uint8_t operator()() {
    static constexpr std::array<std::uint8_t, 8> kCorners{0x00, 0x01, 0x0F, 0x10,
                                                          0x7F, 0x80, 0xFE, 0xFF};
    const auto value = static_cast<std::uint32_t>(random_());
    return value % 2 == 0 ? kCorners[value / 2 % 8] : base::LowByte(value / 2);
  }

 private:
  std::mt19937 random_{908};
};

class OpcodeMap : public testing::Test {
 protected:
  static constexpr base::Address kPc = 0x4000;

  void RandomState() {
    cpu_.a = bytes_();
    cpu_.x = bytes_();
    cpu_.h = bytes_();
    cpu_.sp = static_cast<std::uint16_t>(base::Word(bytes_(), bytes_()));
    cpu_.flags.Unpack(bytes_());
    cpu_.pc = kPc;
    for (int i = 0; i < 8; ++i) bus_.Poke(kPc + static_cast<base::Address>(i), bytes_());
    for (int i = -8; i < 8; ++i) bus_.Poke(cpu_.hx() + static_cast<base::Address>(i), bytes_());
    // Now and then a 16-bit operand equals H:X, for CPHX.
    if (bytes_() % 4 == 0) {
      bus_.Poke(kPc + 1, cpu_.h);
      bus_.Poke(kPc + 2, cpu_.x);
      bus_.Poke(bus_.Peek(kPc + 1), cpu_.h);
      bus_.Poke(bus_.Peek(kPc + 1) + 1u, cpu_.x);
    }
    for (int i = 1; i < 8; ++i) bus_.Poke(cpu_.sp + static_cast<base::Address>(i), bytes_());
  }
  Exit Step() {
    bus_.horizon = bus_.cycle + 1;
    return cpu_.Execute(bus_, Cpu::kNoWatch);
  }

  BiasedBytes bytes_;
  Bus bus_{kAllRam};
  Cpu cpu_;
};

// Sets of the values that each of VHINZC took.
using FlagSets = std::array<std::set<bool>, 6>;
constexpr std::array<std::uint8_t, 6> kFlagBits{ccr::kV, ccr::kH, ccr::kI,
                                                ccr::kN, ccr::kZ, ccr::kC};

void CheckFlags(const isa::PublishedOpcode& line, std::uint8_t before, std::uint8_t after,
                FlagSets& seen) {
  EXPECT_EQ(after & 0x60, 0x60);
  for (std::size_t i = 0; i < kFlagBits.size(); ++i) {
    const bool was = (before & kFlagBits[i]) != 0;
    const bool is = (after & kFlagBits[i]) != 0;
    seen[i].insert(is);
    switch (line.flags[i]) {
      case '-':
        EXPECT_EQ(is, was) << "flag " << i;
        break;
      case '0':
      case '1':
        EXPECT_EQ(is, line.flags[i] == '1') << "flag " << i;
        break;
      default:
        break;
    }
  }
}

bool BranchesAlways(std::string_view name) {
  return name == "JMP" || name == "JSR" || name == "BSR" || name == "RTS" || name == "RTI";
}
bool MayBranch(const isa::PublishedOpcode& line) {
  return line.mode.ends_with("REL");
}

TEST_F(OpcodeMap, EveryInstructionHasItsLengthCyclesAndFlags) {
  const isa::PublishedMap map = isa::ReadPublishedMap();
  ASSERT_EQ(map.size(), 290u);
  for (const auto& [bytes, line] : map) {
    const auto [prefix, opcode] = bytes;
    SCOPED_TRACE(line.mnemonic + " " + line.mode);
    FlagSets seen;
    for (int trial = 0; trial < 600; ++trial) {
      RandomState();
      const base::Address next = kPc + static_cast<base::Address>(line.length);
      bus_.Poke(kPc, isa::kPagePrefix);
      bus_.Poke(kPc + (prefix != 0 ? 1 : 0), static_cast<std::uint8_t>(opcode));
      const std::uint8_t last_operand = bus_.Peek(next - 1);
      const std::uint8_t ccr = cpu_.ccr();
      const std::uint64_t start = bus_.cycle;
      const Exit exit = Step();

      ASSERT_NE(exit, Exit::IllegalOpcode);
      EXPECT_EQ(bus_.cycle - start, static_cast<std::uint64_t>(line.cycles));
      if (MayBranch(line)) {
        const base::Address target =
            base::Low16(next + static_cast<base::Address>(static_cast<std::int8_t>(last_operand)));
        EXPECT_TRUE(cpu_.pc == next || cpu_.pc == target) << cpu_.pc;
      } else if (!BranchesAlways(line.mnemonic)) {
        EXPECT_EQ(cpu_.pc, next);
      }
      // SWI changes its flag only when the monitor is entered.
      if (line.mnemonic != "SWI") CheckFlags(line, ccr, cpu_.ccr(), seen);
      if (HasFailure()) return;
    }
    for (std::size_t i = 0; i < seen.size(); ++i) {
      EXPECT_TRUE(line.flags[i] != '*' || seen[i].size() == 2) << "flag " << i << " never varied";
    }
  }
}

TEST_F(OpcodeMap, EverythingElseIsIllegalAndStaysWhereItIs) {
  const isa::PublishedMap legal = isa::ReadPublishedMap();
  for (int code = 0; code < 512; ++code) {
    const bool paged = code >= 256;
    const auto byte = base::LowByte(static_cast<std::uint32_t>(code));
    if (legal.contains({paged ? 0x9E : 0, byte}) || code == 0x9E) continue;
    cpu_.pc = kPc;
    bus_.Poke(kPc, paged ? 0x9E : byte);
    bus_.Poke(kPc + 1, byte);
    EXPECT_EQ(Step(), Exit::IllegalOpcode) << std::hex << code;
    EXPECT_EQ(cpu_.pc, kPc);
  }
}

TEST_F(OpcodeMap, AddressesAndThePcWrapAtTheEndOfMemory) {
  const auto run = [this](base::Address pc, std::string_view code) {
    for (const std::uint8_t byte : Bytes(code)) bus_.Poke(pc++, byte);
    Step();
  };
  bus_.Poke(0x0010, 0x5A);
  cpu_.h = 0xFF;
  cpu_.x = 0xF0;
  cpu_.sp = 0xFFF0;
  cpu_.pc = kPc;
  run(kPc, "E620");  // LDA $20,X
  EXPECT_EQ(cpu_.a, 0x5A);
  run(kPc + 2, "D70021");  // STA $0021,X
  EXPECT_EQ(bus_.Peek(0x0011), 0x5A);
  run(kPc + 5, "9EEE20");  // LDX $20,SP
  EXPECT_EQ(cpu_.x, 0x5A);
  run(kPc + 8, "DDC000");  // JSR $C000,X with H:X = $FF5A
  EXPECT_EQ(cpu_.pc, 0xBF5A);
  cpu_.sp = 0x0000;
  run(0xBF5A, "87");  // PSHA
  EXPECT_EQ(cpu_.sp, 0xFFFF);
  cpu_.pc = 0xFFFE;
  run(0xFFFE, "2004");  // BRA
  EXPECT_EQ(cpu_.pc, 0x0004);
}

// A short program at $0090 that ends with SWI, and what it leaves behind.
struct Program {
  std::string_view idea;
  std::string_view code;
  std::uint8_t a, x, h, ccr;
  std::vector<std::pair<base::Address, std::uint8_t>> memory;
  std::uint64_t cycles;  // up to the SWI
};

const std::vector<Program>& Programs() {
  // clang-format off
  static const std::vector<Program> programs{
      {"ADD overflows with half carry", "A67FAB0183", 0x80, 0, 0, 0xFC, {}, 4},
      {"16-bit ADC", "6E12806EFF81B681AB01B783B680A901B78283", 0x14, 0, 0, 0x68,
       {{0x80, 0x12}, {0x81, 0xFF}, {0x82, 0x14}, {0x83, 0x00}}, 24},
      {"16-bit SBC", "A600A001B781A620A210B78083", 0x0F, 0, 0, 0x68, {{0x80, 0x0F}, {0x81, 0xFF}}, 14},
      {"MUL 200*100", "AEC8A6649942BF80B78183", 0x20, 0x4E, 0, 0x68, {{0x80, 0x4E}, {0x81, 0x20}}, 16},
      {"DIV 1234/56", "451256A6349952B7808B8683", 0x10, 0x56, 0x10, 0x68, {{0x80, 0x36}}, 20},
      {"sum 1..10 with DBNZX", "AE0A4FBF80BB805BFA83", 0x37, 0, 0, 0x68, {{0x80, 0x01}}, 93},
      {"copy with MOV X+", "45009D7E807E817E8235842003DEAD009D83", 0, 0xA0, 0, 0x68,
       {{0x80, 0xDE}, {0x81, 0xAD}, {0x82, 0x00}, {0x84, 0x00}, {0x85, 0xA0}}, 23},
      {"scan with CBEQ X+", "45009BA65A710220FC200411225A339D83", 0x5A, 0x9E, 0, 0x68, {}, 27},
      {"AIS, SP-relative, TSX", "A7FDA6559EE7029E6C0295E601B780A70383", 0x56, 0xFD, 0, 0x68, {{0x80, 0x56}}, 23},
      {"BSR, JSR, RTS nested", "A601AD05CD009D20064CAD018148819583", 0x08, 0x00, 0x01, 0x68, {}, 35},
      {"shifts, rotates, TPA", "A68148B78046B78147B78244B78349B78485B78583", 0x6C, 0, 0, 0x68,
       {{0x80, 0x02}, {0x81, 0x81}, {0x82, 0xC0}, {0x83, 0x60}, {0x84, 0xC0}, {0x85, 0x6C}}, 26},
      {"BSET, BCLR, BRSET, BRCLR", "3F801E8010801F80008002A6EE0F8002A6DDBE8083", 0, 0x01, 0, 0x68, {{0x80, 0x01}}, 28},
      {"DAA of 19+28", "A619AB287283", 0x47, 0, 0, 0x78, {}, 6},
      {"DAA of 99+01 carries", "A699AB017283", 0x00, 0, 0, 0x6B, {}, 6},
      {"DBNZ leaves every flag", "AE02A69F845BFE83", 0x9F, 0, 0, 0xFF, {}, 12},
      {"RSP keeps the high byte", "4501F1949C9583", 0, 0x00, 0x02, 0x68, {}, 8},
  };
  // clang-format on
  return programs;
}

TEST(Cpu, RunsTheGoldenPrograms) {
  for (const Program& program : Programs()) {
    SCOPED_TRACE(program.idea);
    Mcu mcu = ReadyMcu();
    for (base::Address address = 0x80; address < 0x90; ++address) mcu.Poke(address, 0);
    Load(mcu, 0x0090, program.code);
    ResumeAt(mcu, 0x0090);
    ASSERT_EQ(mcu.cpu().sp, 0x00FF);
    const std::uint64_t start = mcu.cycle();
    ASSERT_EQ(mcu.Run(start + 1000), RunEnd::SoftwareInterrupt);

    EXPECT_EQ(mcu.cycle() - start, program.cycles + 9 + 2);  // SWI and the monitor's PSHH
    const Frame frame = ReadFrame(mcu);
    EXPECT_EQ(frame.a, program.a);
    EXPECT_EQ(frame.x, program.x);
    EXPECT_EQ(frame.h, program.h);
    EXPECT_EQ(frame.ccr, program.ccr);
    for (const auto& [address, value] : program.memory) EXPECT_EQ(mcu.Peek(address), value);
  }
}

}  // namespace
}  // namespace brevant::simulator
