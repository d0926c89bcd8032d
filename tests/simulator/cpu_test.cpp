// SPDX-License-Identifier: MIT
#include "simulator/cpu.h"

#include <gtest/gtest.h>

#include <array>
#include <random>

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

constexpr std::array<std::uint8_t, 6> kFlagBits{ccr::kV, ccr::kH, ccr::kI,
                                                ccr::kN, ccr::kZ, ccr::kC};

// What a computed flag becomes is the matter of the other simulator in lockstep_test.
void CheckFlags(const isa::PublishedOpcode& line, std::uint8_t before, std::uint8_t after) {
  EXPECT_EQ(after & 0x60, 0x60);
  for (std::size_t i = 0; i < kFlagBits.size(); ++i) {
    const char rule = line.flags[i];
    if (rule != '-' && rule != '0' && rule != '1') continue;
    const bool expected = rule == '-' ? (before & kFlagBits[i]) != 0 : rule == '1';
    EXPECT_EQ((after & kFlagBits[i]) != 0, expected) << "flag " << i;
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
    for (int trial = 0; trial < 200; ++trial) {
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
      if (line.mnemonic != "SWI") CheckFlags(line, ccr, cpu_.ccr());
      if (HasFailure()) return;
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

// What the other simulator in lockstep_test cannot tell: short programs and what they leave behind.
TEST(Cpu, RunsTheGoldenPrograms) {
  struct Row {
    std::string_view idea, code;
    std::uint8_t a, x, h, ccr;
    std::uint64_t cycles;  // up to the SWI
  };
  const Row rows[] = {
      {"ADD overflows with half carry", "A67FAB0183", 0x80, 0, 0, 0xFC, 4},
      {"sum 1..10 with DBNZX", "AE0A4FBF80BB805BFA83", 0x37, 0, 0, 0x68, 93},
      {"DAA of 19+28", "A619AB287283", 0x47, 0, 0, 0x78, 6},
      {"DAA of 99+01 carries", "A699AB017283", 0x00, 0, 0, 0x6B, 6},
      {"DBNZ leaves every flag", "AE02A69F845BFE83", 0x9F, 0, 0, 0xFF, 12},
      {"RSP keeps the high byte", "4501F1949C9583", 0, 0x00, 0x02, 0x68, 8},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.idea);
    Mcu mcu = ReadyMcu();
    const std::uint64_t start = mcu.cycle();
    ASSERT_EQ(RunCode(mcu, 0x0090, row.code), RunEnd::SoftwareInterrupt);
    EXPECT_EQ(mcu.cycle() - start, 9 + row.cycles + 9 + 2);  // RTI, SWI and the monitor's PSHH
    const Frame frame = ReadFrame(mcu);
    EXPECT_EQ(frame.a, row.a);
    EXPECT_EQ(frame.x, row.x);
    EXPECT_EQ(frame.h, row.h);
    EXPECT_EQ(frame.ccr, row.ccr);
  }
}

}  // namespace
}  // namespace brevant::simulator
