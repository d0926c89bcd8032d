// SPDX-License-Identifier: MIT
#include "simulator/mcu.h"

#include <gtest/gtest.h>

#include "simulator/mcu_kit.h"

namespace brevant::simulator {
namespace {

constexpr base::Address kConfig = 0x001F, kIntscr = 0x001D, kT1sc = 0x0020, kSrsr = 0xFE01;
constexpr base::Address kBfcr = 0xFE03, kBrkh = 0xFE09, kBrkscr = 0xFE0B;

void SetVector(Mcu& mcu, base::Address vector, base::Address handler) {
  mcu.Poke(vector, base::HighByte(handler));
  mcu.Poke(vector + 1, base::LowByte(handler));
}

void SetBreak(Mcu& mcu, base::Address address) {
  mcu.Write(kBrkh, base::HighByte(address));
  mcu.Write(kBrkh + 1, base::LowByte(address));
  mcu.Write(kBrkscr, 0x80);
}

RunEnd RunFor(Mcu& mcu, std::uint64_t cycles) {
  return mcu.Run(mcu.cycle() + cycles);
}

TEST(McuBreak, StopsBeforeTheOpcodeAndPassesItOnceAfterwards) {
  Mcu mcu = ReadyMcu();
  Load(mcu, 0x0100, "5F 5C 9D 20FC");  // CLRX; loop: INCX; NOP; BRA loop
  SetBreak(mcu, 0x0101);
  ResumeAt(mcu, 0x0100);
  for (int x = 0; x < 3; ++x) {
    ASSERT_EQ(RunFor(mcu, 1000), RunEnd::Break);
    EXPECT_TRUE(mcu.in_break());
    EXPECT_EQ(ReadFrame(mcu).pc, 0x0101u);
    EXPECT_EQ(ReadFrame(mcu).x, x);
    EXPECT_EQ(mcu.Read(kBrkscr), 0xC0);
    mcu.Write(kBrkscr, 0x80);
    mcu.ResumeFromMonitor();
  }
  mcu.Write(kBrkscr, 0);
  EXPECT_EQ(RunFor(mcu, 1000), RunEnd::CycleLimit);
}

TEST(McuBreak, StepsAnInstructionThatBranchesToItself) {
  Mcu mcu = ReadyMcu();
  Load(mcu, 0x0100, "4BFE");  // DBNZA *
  SetBreak(mcu, 0x0100);
  ResumeAt(mcu, 0x0100);
  const std::uint64_t start = mcu.cycle();
  ASSERT_EQ(RunFor(mcu, 1000), RunEnd::Break);
  EXPECT_EQ(ReadFrame(mcu).a, 0xFF);
  EXPECT_EQ(mcu.cycle() - start, 3u + 9 + 2);
}

TEST(McuBreak, OnAnOperandByteComesAfterTheInstruction) {
  Mcu mcu = ReadyMcu();
  Load(mcu, 0x0100, "CC0110");  // JMP $0110
  SetBreak(mcu, 0x0102);
  ResumeAt(mcu, 0x0100);
  ASSERT_EQ(RunFor(mcu, 100), RunEnd::Break);
  EXPECT_EQ(ReadFrame(mcu).pc, 0x0110u);
}

TEST(McuBreak, SettingBrkaBreaksBeforeTheNextInstructionAndAgainUntilCleared) {
  Mcu mcu = ReadyMcu();
  // LDA #$40; STA BRKSCR; INCA
  ASSERT_EQ(RunCode(mcu, 0x0100, "A640C7FE0B4C"), RunEnd::Break);
  EXPECT_EQ(ReadFrame(mcu).pc, 0x0105u);
  mcu.ResumeFromMonitor();
  ASSERT_EQ(RunFor(mcu, 100), RunEnd::Break);
  EXPECT_EQ(ReadFrame(mcu).pc, 0x0105u);
}

TEST(McuBreak, StopsTheTimersAndProtectsTheirFlags) {
  Mcu mcu = ReadyMcu();
  mcu.Write(kT1sc + 3, 0x00);  // modulo 99
  mcu.Write(kT1sc + 4, 99);
  mcu.Write(kT1sc, 0x00);
  // In the monitor after a reset or SWI the timer counts.
  mcu.AdvanceTo(mcu.cycle() + 100);
  EXPECT_EQ(mcu.Read(kT1sc), 0x80);
  mcu.Write(kT1sc, 0x00);
  EXPECT_EQ(mcu.Read(kT1sc), 0x00);

  Load(mcu, 0x0100, "20FE");
  SetBreak(mcu, 0x0100);
  ResumeAt(mcu, 0x0100);
  ASSERT_EQ(RunFor(mcu, 500), RunEnd::Break);
  while (mcu.Peek(kT1sc) == 0) {  // until the flag is set at the break
    mcu.ResumeFromMonitor();
    mcu.Write(kBrkscr, 0x80);
    ASSERT_EQ(RunFor(mcu, 500), RunEnd::Break);
  }
  const std::uint8_t low = mcu.Read(kT1sc + 2);
  mcu.AdvanceTo(mcu.cycle() + 77);
  EXPECT_EQ(mcu.Read(kT1sc + 2), low);
  mcu.Read(kT1sc);
  mcu.Write(kT1sc, 0x00);
  EXPECT_EQ(mcu.Peek(kT1sc), 0x80);
  mcu.Write(kBfcr, 0x80);
  mcu.Read(kT1sc);
  mcu.Write(kT1sc, 0x00);
  EXPECT_EQ(mcu.Peek(kT1sc), 0x00);
}

TEST(McuInterrupt, WaitsForTheMaskAndForOneInstructionAfterCli) {
  Mcu mcu = ReadyMcu();
  SetVector(mcu, 0xFFFA, 0x0180);
  Load(mcu, 0x0180, "83");
  mcu.SetIrqLow(true);
  // INCX; INCX; CLI; INCX; INCX
  ASSERT_EQ(RunCode(mcu, 0x0100, "5C5C9A5C5C"), RunEnd::SoftwareInterrupt);
  const Frame frame = ReadFrame(mcu);
  EXPECT_EQ(frame.x, 3);
  EXPECT_EQ(frame.pc, 0x0181u);
  EXPECT_EQ(base::Word(mcu.Peek(frame.sp + 4), mcu.Peek(frame.sp + 5)), 0x0104u);
}

TEST(McuInterrupt, IntscrMasksAcknowledgesAndChoosesTheLevel) {
  Mcu mcu = ReadyMcu();
  SetVector(mcu, 0xFFFA, 0x0180);
  Load(mcu, 0x0180, "3C8080");  // INC $80; RTI
  mcu.Poke(0x0080, 0);
  Load(mcu, 0x0100, "20FE");
  mcu.Write(kIntscr, 0x02);
  mcu.SetIrqLow(true);
  EXPECT_EQ(mcu.Read(kIntscr), 0x0A);
  ResumeAt(mcu, 0x0100, 0x60);
  EXPECT_EQ(RunFor(mcu, 100), RunEnd::CycleLimit);
  EXPECT_EQ(mcu.Peek(0x0080), 0);
  mcu.Write(kIntscr, 0x00);  // the edge was kept
  EXPECT_EQ(RunFor(mcu, 100), RunEnd::CycleLimit);
  EXPECT_EQ(mcu.Peek(0x0080), 1);
  mcu.SetIrqLow(false);
  mcu.SetIrqLow(true);
  mcu.Write(kIntscr, 0x04);  // acknowledged before it was served
  EXPECT_EQ(RunFor(mcu, 100), RunEnd::CycleLimit);
  EXPECT_EQ(mcu.Peek(0x0080), 1);
  mcu.Write(kIntscr, 0x01);  // now the low level counts, over and over
  EXPECT_EQ(RunFor(mcu, 200), RunEnd::CycleLimit);
  EXPECT_GT(mcu.Peek(0x0080), 5);
}

TEST(McuInterrupt, TimerOverflowsArriveOnTimeAndIrqGoesFirst) {
  Mcu mcu = ReadyMcu();
  SetVector(mcu, 0xFFF2, 0x0180);
  SetVector(mcu, 0xFFFA, 0x01A0);
  Load(mcu, 0x0180, "B620 1F20 3C80 80");  // LDA T1SC; BCLR 7,T1SC; INC $80; RTI
  Load(mcu, 0x01A0, "83");
  Load(mcu, 0x0100, "20FE");
  mcu.Poke(0x0080, 0);
  mcu.Write(kT1sc + 3, 0x03);  // modulo 999
  mcu.Write(kT1sc + 4, 0xE7);
  mcu.Write(kT1sc, 0x50);  // TOIE, TRST
  ResumeAt(mcu, 0x0100, 0x60);
  EXPECT_EQ(RunFor(mcu, 100'500), RunEnd::CycleLimit);
  EXPECT_EQ(mcu.Peek(0x0080), 100);

  // Both at once: IF5 and IF1 are up, and the IRQ handler runs.
  mcu.AdvanceTo(mcu.cycle() + 1000);
  mcu.SetIrqLow(true);
  EXPECT_EQ(mcu.Read(0xFE04), 0x44);
  EXPECT_EQ(RunFor(mcu, 100), RunEnd::SoftwareInterrupt);
  EXPECT_EQ(ReadFrame(mcu).pc, 0x01A1u);
}

TEST(McuInterrupt, OutputCompareHasItsOwnVectors) {
  Mcu mcu = ReadyMcu();
  SetVector(mcu, 0xFFF0, 0x0180);  // TIM2 channel 0
  Load(mcu, 0x0180, "83");
  mcu.Write(0x0030, 0x50);  // T2SC0: CHIE, output compare
  mcu.Write(0x0031, 0x01);
  mcu.Write(0x0032, 0x00);
  mcu.Write(0x002B, 0x10);
  const std::uint64_t start = mcu.cycle();
  ASSERT_EQ(RunCode(mcu, 0x0100, "20FE", 1000, 0x60), RunEnd::SoftwareInterrupt);
  const std::uint64_t late = mcu.cycle() - start - 256;
  EXPECT_LE(late, 3u + 9 + 9 + 2);  // BRA, entry, SWI, monitor
}

TEST(McuSleep, WaitEndsWithATimerInterruptAtItsCycle) {
  Mcu mcu = ReadyMcu();
  SetVector(mcu, 0xFFF2, 0x0180);
  Load(mcu, 0x0180, "83");
  mcu.Write(kT1sc + 3, 0x4E);  // modulo 19,999
  mcu.Write(kT1sc + 4, 0x1F);
  mcu.Write(kT1sc, 0x50);
  const std::uint64_t start = mcu.cycle();
  Load(mcu, 0x0100, "8F");
  ResumeAt(mcu, 0x0100);
  EXPECT_EQ(RunFor(mcu, 1000), RunEnd::CycleLimit);
  EXPECT_TRUE(mcu.waiting());
  ASSERT_EQ(RunFor(mcu, 100'000), RunEnd::SoftwareInterrupt);
  EXPECT_EQ(mcu.cycle(), start + 20'000 + 9 + 9 + 2);
  const Frame frame = ReadFrame(mcu);
  EXPECT_EQ(base::Word(mcu.Peek(frame.sp + 4), mcu.Peek(frame.sp + 5)), 0x0101u);
}

TEST(McuSleep, StopIsLegalOnlyWhenEnabledAndEndsWithIrqAlone) {
  Mcu mcu = ReadyMcu();
  EXPECT_EQ(RunCode(mcu, 0x0100, "8E"), RunEnd::Reset);
  EXPECT_EQ(mcu.reset_cause(), ResetCause::IllegalOpcode);

  mcu.EnterMonitor();
  SetVector(mcu, 0xFFFA, 0x0180);
  Load(mcu, 0x0180, "83");
  mcu.Write(kConfig, 0x02);
  mcu.Write(kT1sc + 4, 0x10);
  mcu.Write(kT1sc, 0x50);  // would interrupt a WAIT
  EXPECT_EQ(RunCode(mcu, 0x0100, "8E"), RunEnd::CycleLimit);
  EXPECT_TRUE(mcu.waiting());
  mcu.SetIrqLow(true);
  EXPECT_EQ(RunFor(mcu, 100), RunEnd::SoftwareInterrupt);
}

TEST(McuReset, CopBitesWhenNobodyServesIt) {
  Mcu mcu = ReadyMcu();
  mcu.Write(kConfig, 0x80);  // COPRS: 8,176 crystal cycles are 4,088 bus cycles
  const Mcu configured = mcu;
  EXPECT_EQ(RunCode(mcu, 0x0100, "20FE"), RunEnd::CycleLimit) << "off while VTST is on IRQ";

  mcu = configured;
  mcu.SetVtst(false);
  const std::uint64_t start = mcu.cycle();
  ASSERT_EQ(RunCode(mcu, 0x0100, "20FE"), RunEnd::Reset);
  EXPECT_EQ(mcu.reset_cause(), ResetCause::Cop);
  EXPECT_NEAR(static_cast<double>(mcu.cycle() - start), 4088 + 16, 30);
  EXPECT_EQ(mcu.Read(kSrsr), 0xA0);

  mcu = configured;
  mcu.SetVtst(false);
  EXPECT_EQ(RunCode(mcu, 0x0100, "C7FFFF20FB"), RunEnd::CycleLimit) << "served by STA $FFFF";

  mcu = ReadyMcu();
  mcu.SetVtst(false);
  mcu.Write(kConfig, 0x81);  // COPD
  EXPECT_EQ(RunCode(mcu, 0x0100, "20FE"), RunEnd::CycleLimit);
}

TEST(McuReset, EachCauseIsRecordedUntilRead) {
  struct Case {
    std::string_view what;
    base::Address at;
    std::string_view code;
    ResetCause cause;
  };
  const std::vector<Case> cases{
      {"illegal opcode", 0x0100, "32", ResetCause::IllegalOpcode},
      {"illegal second byte", 0x0100, "9E00", ResetCause::IllegalOpcode},
      {"jump to nowhere", 0x0100, "CC4000", ResetCause::IllegalAddress},
      {"jump into the registers", 0x0100, "BC08", ResetCause::IllegalAddress},
      {"off the end of RAM", 0x023F, "9D", ResetCause::IllegalAddress},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    Mcu mcu = ReadyMcu();
    mcu.Read(kSrsr);
    mcu.Poke(0x0200, 0x77);
    ASSERT_EQ(RunCode(mcu, c.at, c.code), RunEnd::Reset);
    EXPECT_EQ(mcu.reset_cause(), c.cause);
    EXPECT_EQ(mcu.Read(kSrsr), static_cast<std::uint8_t>(c.cause));
    EXPECT_EQ(mcu.Read(kSrsr), 0);
    EXPECT_EQ(mcu.cpu().pc, Mcu::kMonitorResetEntry);
    EXPECT_EQ(mcu.cpu().sp, 0x00FF);
    EXPECT_TRUE(mcu.security_passed());
    EXPECT_EQ(mcu.Peek(0x0200), 0x77);
  }
}

TEST(McuReset, PowerOnLosesRamAndSecurityButNotFlash) {
  Mcu mcu = ReadyMcu();
  const std::uint8_t ram = mcu.Peek(0x0200);
  mcu.Poke(0x0200, static_cast<std::uint8_t>(ram + 1));
  mcu.Poke(0x9000, 0x12);
  const std::uint64_t before = mcu.cycle();
  mcu.PowerOnReset();
  EXPECT_GT(mcu.cycle(), before);
  EXPECT_FALSE(mcu.security_passed());
  EXPECT_FALSE(mcu.in_monitor());
  EXPECT_EQ(mcu.Peek(0x0200), ram);
  EXPECT_EQ(mcu.Peek(0x9000), 0x12);
}

TEST(Mcu, ACopyIsASnapshot) {
  Mcu mcu = ReadyMcu();
  SetVector(mcu, 0xFFF2, 0x0180);
  Load(mcu, 0x0180, "B6201F20 3C80 80");        // clear TOF; INC $80; RTI
  Load(mcu, 0x0100, "9A 5C 9EEF01 E790 20F9");  // CLI; loop over registers, stack and RAM
  mcu.Write(kT1sc + 3, 0x01);
  mcu.Write(kT1sc, 0x41);
  ResumeAt(mcu, 0x0100);
  ASSERT_EQ(RunFor(mcu, 12'345), RunEnd::CycleLimit);

  const Mcu snapshot = mcu;
  EXPECT_TRUE(mcu == snapshot);
  ASSERT_EQ(RunFor(mcu, 10'000), RunEnd::CycleLimit);
  EXPECT_FALSE(mcu == snapshot);
  Mcu again = snapshot;
  // In slices of its own: where a run pauses must not matter.
  while (again.cycle() < mcu.cycle()) {
    ASSERT_EQ(again.Run(std::min(again.cycle() + 7, mcu.cycle())), RunEnd::CycleLimit);
  }
  EXPECT_TRUE(again == mcu);
}

}  // namespace
}  // namespace brevant::simulator
