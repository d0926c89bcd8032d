// SPDX-License-Identifier: MIT
#include "simulator/cpu.h"

#include <gtest/gtest.h>

#include "isa/instruction_table.h"
#include "isa/opcode_rows.h"
#include "simulator/mcu_kit.h"

namespace brevant::simulator {
namespace {

constexpr base::Address kPc = 0x4000;

class OpcodeMap : public testing::Test {
 protected:
  Exit Step() {
    bus_.horizon = bus_.cycle + 1;
    return cpu_.Execute(bus_, Cpu::kNoWatch);
  }

  Bus bus_{kAllRam};
  Cpu cpu_;
};

// What else an instruction does is the matter of the other simulator in lockstep_test.
TEST_F(OpcodeMap, EveryInstructionHasItsLengthAndCycles) {
  const isa::PublishedMap map = isa::ReadPublishedMap();
  ASSERT_EQ(map.size(), 290u);
  for (const auto& [bytes, line] : map) {
    SCOPED_TRACE(line.mnemonic + " " + line.mode);
    const auto [prefix, opcode] = bytes;
    const base::Address next = kPc + static_cast<base::Address>(line.length);
    for (base::Address at = kPc; at < next; ++at) bus_.Poke(at, 0x10);
    bus_.Poke(kPc, isa::kPagePrefix);
    bus_.Poke(kPc + (prefix != 0 ? 1u : 0u), static_cast<std::uint8_t>(opcode));
    for (const int a : {0x00, 0x10}) {
      cpu_ = {};
      cpu_.pc = kPc;
      cpu_.sp = 0x0180;
      cpu_.a = cpu_.x = static_cast<std::uint8_t>(a);
      const std::uint64_t start = bus_.cycle;
      ASSERT_NE(Step(), Exit::IllegalOpcode);
      EXPECT_EQ(bus_.cycle - start, static_cast<std::uint64_t>(line.cycles));
      const bool leaves = line.mnemonic[0] == 'J' || line.mnemonic == "BSR" ||
                          line.mnemonic == "RTS" || line.mnemonic == "RTI";
      EXPECT_TRUE(leaves || cpu_.pc == next || cpu_.pc == next + 0x10) << cpu_.pc;
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
