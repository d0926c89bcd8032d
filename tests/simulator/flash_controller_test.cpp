// SPDX-License-Identifier: MIT
// The flash controller where it works: behind the bus of an MCU, and driven by code in RAM.
#include "simulator/flash_controller.h"

#include <gtest/gtest.h>

#include <functional>

#include "simulator/mcu_kit.h"

namespace brevant::simulator {
namespace {

constexpr base::Address kFlcr = 0xFE08;
namespace t = flash_timing;

class Flash : public testing::Test {
 protected:
  explicit Flash(const Device& device = Gp32()) : mcu_(ReadyMcu(device)) {}

  void Wait(std::uint64_t cycles) { mcu_.AdvanceTo(mcu_.cycle() + cycles); }
  void Control(int value) { mcu_.Write(kFlcr, static_cast<std::uint8_t>(value)); }
  void Select(int mode, base::Address address) {
    Control(mode);
    mcu_.Read(mcu_.device().flbpr);
    mcu_.Write(address, 0xFF);
  }
  void Byte(base::Address address, std::uint8_t value, std::uint64_t pulse = t::kProgram) {
    mcu_.Write(address, value);
    Wait(pulse);
  }
  // The rest of a sequence after Select and its bytes or its pulse.
  void RaiseVoltage(int mode) {
    Wait(t::kNvs);
    Control(mode | flcr::kHven);
  }
  void Finish(std::uint64_t hold = t::kNvh) {
    Control(flcr::kHven);
    Wait(hold);
    Control(0);
  }
  void Program(base::Address address, std::uint8_t value) {
    Select(flcr::kPgm, address);
    RaiseVoltage(flcr::kPgm);
    Wait(t::kPgs);
    Byte(address, value);
    Finish();
  }
  void Erase(int mode, base::Address address) {
    const bool mass = (mode & flcr::kMass) != 0;
    Select(mode, address);
    RaiseVoltage(mode);
    Wait(mass ? t::kMassErase : t::kErase);
    Finish(mass ? t::kNvhMass : t::kNvh);
  }
  const FlashDiagnostics& found() const { return mcu_.flash_diagnostics(); }

  Mcu mcu_;
};

class QlFlash : public Flash {
 protected:
  QlFlash() : Flash(Ql()) {}
};

TEST_F(Flash, ProgrammingOnlyClearsBits) {
  Program(0x9000, 0x5A);
  EXPECT_EQ(mcu_.Read(0x9000), 0x5A);
  Program(0x9000, 0xF0);
  EXPECT_EQ(mcu_.Read(0x9000), 0x50);
  EXPECT_EQ(found(), FlashDiagnostics{});
}

TEST_F(Flash, ErasesThePageOfTheSelectedAddressAlone) {
  for (const base::Address a : {0x8FFFu, 0x9000u, 0x907Fu, 0x9080u}) mcu_.Poke(a, 0x00);
  Erase(flcr::kErase, 0x9012);
  EXPECT_EQ(mcu_.Read(0x8FFF), 0x00);
  EXPECT_EQ(mcu_.Read(0x9000), 0xFF);
  EXPECT_EQ(mcu_.Read(0x907F), 0xFF);
  EXPECT_EQ(mcu_.Read(0x9080), 0x00);
}

TEST_F(QlFlash, HasPagesOf64Bytes) {
  for (const base::Address a : {0xEEFFu, 0xEF00u, 0xEF3Fu, 0xEF40u}) mcu_.Poke(a, 0x00);
  Erase(flcr::kErase, 0xEF3F);
  EXPECT_EQ(mcu_.Read(0xEEFF), 0x00);
  EXPECT_EQ(mcu_.Read(0xEF00), 0xFF);
  EXPECT_EQ(mcu_.Read(0xEF3F), 0xFF);
  EXPECT_EQ(mcu_.Read(0xEF40), 0x00);
}

TEST_F(Flash, MassEraseReachesEveryRangeAndMayLeaveMassSet) {
  for (const base::Address a : {0x8000u, 0xFDFFu, 0xFF7Eu, 0xFFDCu, 0xFFFFu}) mcu_.Poke(a, 0x00);
  Select(flcr::kErase | flcr::kMass, 0xFF7E);
  RaiseVoltage(flcr::kErase | flcr::kMass);
  Wait(t::kMassErase);
  Control(flcr::kHven | flcr::kMass);
  Wait(t::kNvhMass);
  Control(flcr::kMass);
  for (const base::Address a : {0x8000u, 0xFDFFu, 0xFF7Eu, 0xFFDCu, 0xFFFFu}) {
    EXPECT_EQ(mcu_.Read(a), 0xFF) << std::hex << a;
  }
  EXPECT_EQ(found().refused, 0u);
  Program(0x8000, 0x12);
  EXPECT_EQ(mcu_.Read(0x8000), 0x12);
}

TEST_F(Flash, TakesBytesOutsideTheRowAndLongPulsesButCountsThem) {
  Select(flcr::kPgm, 0x9000);
  RaiseVoltage(flcr::kPgm);
  Wait(t::kPgs);
  Byte(0x903F, 0x11, t::kProgramMax);
  Byte(0x9040, 0x22, t::kProgramMax + 1);
  Byte(0x9041, 0x33);
  Finish();
  EXPECT_EQ(mcu_.Read(0x903F), 0x11);
  EXPECT_EQ(mcu_.Read(0x9040), 0x22);
  EXPECT_EQ(mcu_.Read(0x9041), 0x33);
  EXPECT_EQ(found().refused, 0u);
  EXPECT_EQ(found().outside_row, 2u);
  EXPECT_EQ(found().long_pulses, 1u);
}

// Each breaks one rule of an attempt to program $9000 or to erase its page.
TEST_F(Flash, ABrokenSequenceChangesNothingAndIsCounted) {
  const int pgm = flcr::kPgm, erase = flcr::kErase, hven = flcr::kHven;
  struct Case {
    std::string_view what;
    FlashFault fault;
    std::function<void()> steps;
  };
  const auto program_from_select = [&](std::uint64_t nvs, std::uint64_t pgs, std::uint64_t pulse,
                                       std::uint64_t hold) {
    Wait(nvs);
    Control(pgm | hven);
    Wait(pgs);
    Byte(0x9000, 0x00, pulse);
    Finish(hold);
  };
  const std::vector<Case> cases{
      {"FLBPR not read", FlashFault::Order,
       [&] {
         Control(pgm);
         mcu_.Write(0x9000, 0);
         program_from_select(t::kNvs, t::kPgs, t::kProgram, t::kNvh);
       }},
      {"FLBPR read too early", FlashFault::Order,
       [&] {
         mcu_.Read(0xFF7E);
         Control(pgm);
         mcu_.Write(0x9000, 0);
       }},
      {"no address selected", FlashFault::Order,
       [&] {
         Control(pgm);
         mcu_.Read(0xFF7E);
         Wait(t::kNvs);
         Control(pgm | hven);
       }},
      {"high voltage at once", FlashFault::Order, [&] { Control(pgm | hven); }},
      {"both modes", FlashFault::BothModes, [&] { Control(pgm | erase); }},
      {"mode changed on the way", FlashFault::Order,
       [&] {
         Select(pgm, 0x9000);
         Wait(t::kNvs);
         Control(erase | hven);
       }},
      {"tNVS short", FlashFault::TooShort,
       [&] {
         Select(pgm, 0x9000);
         Wait(t::kNvs - 1);
         Control(pgm | hven);
       }},
      {"tPGS short", FlashFault::TooShort,
       [&] {
         Select(pgm, 0x9000);
         program_from_select(t::kNvs, t::kPgs - 1, t::kProgram, t::kNvh);
       }},
      {"tPROG short", FlashFault::TooShort,
       [&] {
         Select(pgm, 0x9000);
         program_from_select(t::kNvs, t::kPgs, t::kProgram - 1, t::kNvh);
       }},
      {"tNVH short", FlashFault::TooShort,
       [&] {
         Select(pgm, 0x9000);
         program_from_select(t::kNvs, t::kPgs, t::kProgram, t::kNvh - 1);
       }},
      {"PGM and HVEN cleared together", FlashFault::Order,
       [&] {
         Select(pgm, 0x9000);
         RaiseVoltage(pgm);
         Wait(t::kPgs);
         Byte(0x9000, 0x00);
         Control(0);
       }},
      {"erase pulse short", FlashFault::TooShort,
       [&] {
         Select(erase, 0x9000);
         RaiseVoltage(erase);
         Wait(t::kErase - 1);
         Finish();
       }},
      {"flash written under erase voltage", FlashFault::Order,
       [&] {
         Select(erase, 0x9000);
         RaiseVoltage(erase);
         mcu_.Write(0xFFFF, 0);
         Wait(t::kErase);
         Finish();
       }},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    mcu_ = ReadyMcu();
    mcu_.Poke(0x9000, 0xA5);
    c.steps();
    EXPECT_EQ(mcu_.Peek(0x9000), 0xA5);
    EXPECT_EQ(found().refused, 1u);
    EXPECT_EQ(found().last_fault, c.fault);
    EXPECT_EQ(mcu_.Peek(kFlcr) & flcr::kHven, 0);
    Control(0);
    Program(0x9000, 0x00);
    EXPECT_EQ(mcu_.Peek(0x9000), 0x00) << "the controller did not recover";
  }
}

TEST_F(Flash, BlockProtectionHoldsUnlessHighVoltageIsOnIrq) {
  mcu_.Poke(0xFF7E, 0xFE);  // protects $FF00 and up
  mcu_.SetVtst(false);
  Program(0xFFF0, 0x00);
  EXPECT_EQ(mcu_.Peek(0xFFF0), 0xFF);
  EXPECT_EQ(found().last_fault, FlashFault::Protected);
  Program(0xFDFF, 0x00);
  EXPECT_EQ(mcu_.Peek(0xFDFF), 0x00);
  Erase(flcr::kErase | flcr::kMass, 0x8000);
  EXPECT_EQ(mcu_.Peek(0xFDFF), 0x00);
  EXPECT_EQ(found().refused, 2u);

  mcu_.SetVtst(true);
  Program(0xFFF0, 0x00);
  EXPECT_EQ(mcu_.Peek(0xFFF0), 0x00);
  Erase(flcr::kErase | flcr::kMass, 0x8000);
  EXPECT_EQ(mcu_.Peek(0xFF7E), 0xFF);
}

TEST_F(QlFlash, CountsItsProtectionFromC000InStepsOf64) {
  mcu_.Poke(0xFFBE, 0xB9);  // protects $EE40 and up
  mcu_.SetVtst(false);
  Program(0xEE3F, 0x00);
  Program(0xEE40, 0x00);
  EXPECT_EQ(mcu_.Peek(0xEE3F), 0x00);
  EXPECT_EQ(mcu_.Peek(0xEE40), 0xFF);
}

TEST_F(Flash, WithoutSecurityOnlyAMassEraseThroughFlbprWorks) {
  mcu_.Poke(0xFFF6, 0x12);
  mcu_.SetSecurityPassed(false);
  Program(0x9000, 0x00);
  Erase(flcr::kErase, 0xFFF6);
  Erase(flcr::kErase | flcr::kMass, 0x8000);
  EXPECT_EQ(found().refused, 3u);
  EXPECT_EQ(found().last_fault, FlashFault::Locked);
  EXPECT_EQ(mcu_.Peek(0x9000), 0xFF);
  EXPECT_EQ(mcu_.Peek(0xFFF6), 0x12);
  Erase(flcr::kErase | flcr::kMass, 0xFF7E);
  EXPECT_EQ(mcu_.Peek(0xFFF6), 0xFF);
}

TEST_F(Flash, WritesOutsideASequenceAreIgnored) {
  mcu_.Write(0x9000, 0x00);
  EXPECT_EQ(mcu_.Read(0x9000), 0xFF);
  EXPECT_EQ(found().ignored_writes, 1u);
  EXPECT_EQ(found().refused, 0u);
}

TEST_F(Flash, CodeInRamErasesAndPrograms) {
  mcu_.Poke(0x9000, 0x00);
  // LDA #2; STA FLCR; LDA FLBPR; LDHX #$9000; STA ,X; BSR delay; LDA #$0A; STA FLCR; LDX #37;
  // loop: BSR delay; DBNZX loop; LDA #8; STA FLCR; BSR delay; CLRA; STA FLCR; SWI;
  // delay (76 cycles): LDA #22; DBNZA *; RTS
  const std::string_view erase =
      "A602C7FE08 C6FF7E 459000 F7 AD17 A60AC7FE08 AE25 AD0E 5BFC A608C7FE08 AD05 4FC7FE08 83"
      "A616 4BFE 81";
  ASSERT_EQ(RunCode(mcu_, 0x0100, erase), RunEnd::SoftwareInterrupt);
  EXPECT_EQ(mcu_.Read(0x9000), 0xFF);
  // The same with PGM and two bytes: LDA #$12; STA ,X; AIX #1; BSR delay; LDA #$34; STA ,X; ...
  const std::string_view program =
      "A601C7FE08 C6FF7E 459000 F7 AD1F A609C7FE08 AD18 A612F7AF01 AD11 A634F7 AD0C A608C7FE08"
      "AD05 4FC7FE08 83 A616 4BFE 81";
  ASSERT_EQ(RunCode(mcu_, 0x0100, program), RunEnd::SoftwareInterrupt);
  EXPECT_EQ(mcu_.Read(0x9000), 0x12);
  EXPECT_EQ(mcu_.Read(0x9001), 0x34);
  EXPECT_EQ(found(), FlashDiagnostics{});
}

TEST_F(Flash, CodeInFlashSpoilsTheSequenceItRuns) {
  Select(flcr::kPgm, 0x9000);
  Wait(t::kNvs);
  // LDA #9; STA FLCR; SWI, fetched from the array.
  ASSERT_EQ(RunCode(mcu_, 0x8000, "A609C7FE0883"), RunEnd::SoftwareInterrupt);
  EXPECT_EQ(found().last_fault, FlashFault::RanFromFlash);
}

}  // namespace
}  // namespace brevant::simulator
