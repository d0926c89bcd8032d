// SPDX-License-Identifier: MIT
// The flash controller where it works: behind the bus of an MCU, and driven by code in RAM.
#include "simulator/flash_controller.h"

#include <gtest/gtest.h>

#include <map>
#include <sstream>

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

TEST_F(Flash, ProgrammingOnlyClearsBitsAndNeedsASequence) {
  Program(0x9000, 0x5A);
  EXPECT_EQ(mcu_.Read(0x9000), 0x5A);
  Program(0x9000, 0xF0);
  EXPECT_EQ(mcu_.Read(0x9000), 0x50);
  EXPECT_EQ(found(), FlashDiagnostics{});
  mcu_.Write(0x9000, 0x00);
  EXPECT_EQ(mcu_.Read(0x9000), 0x50);
  EXPECT_EQ(found().ignored_writes, 1u);
  EXPECT_EQ(found().refused, 0u);
}

struct PageCase {
  const Device& device;
  base::Address selected, first, last;
};

class FlashPage : public Flash, public testing::WithParamInterface<PageCase> {
 protected:
  FlashPage() : Flash(GetParam().device) {}
};

TEST_P(FlashPage, IsErasedAlone) {
  const auto [device, selected, first, last] = GetParam();
  for (const base::Address a : {first - 1, first, last, last + 1}) mcu_.Poke(a, 0x00);
  Erase(flcr::kErase, selected);
  EXPECT_EQ(mcu_.Read(first - 1), 0x00);
  EXPECT_EQ(mcu_.Read(first), 0xFF);
  EXPECT_EQ(mcu_.Read(last), 0xFF);
  EXPECT_EQ(mcu_.Read(last + 1), 0x00);
}

INSTANTIATE_TEST_SUITE_P(Devices, FlashPage,
                         testing::Values(PageCase{Gp32(), 0x9012, 0x9000, 0x907F},
                                         PageCase{Ql(), 0xEF3F, 0xEF00, 0xEF3F}));

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

// Each breaks one rule of an attempt to program $9000 or to erase its page. A step is a value of
// the control register, an address that is written (FLBPR: read), or a time that passes.
TEST_F(Flash, ABrokenSequenceChangesNothingAndIsCounted) {
  struct Case {
    const char* what;
    FlashFault fault;
    const char* steps;
  };
  const Case cases[] = {
      {"FLBPR not read", FlashFault::Order, "PGM 9000 NVS PGM+HVEN PGS 9000 PROG HVEN NVH 0"},
      {"FLBPR read too early", FlashFault::Order, "FLBPR PGM 9000"},
      {"no address selected", FlashFault::Order, "PGM FLBPR NVS PGM+HVEN"},
      {"high voltage at once", FlashFault::Order, "PGM+HVEN"},
      {"both modes", FlashFault::BothModes, "PGM+ERASE"},
      {"mode changed on the way", FlashFault::Order, "PGM FLBPR 9000 NVS ERASE+HVEN"},
      {"tNVS short", FlashFault::TooShort, "PGM FLBPR 9000 NVS- PGM+HVEN"},
      {"tPGS short", FlashFault::TooShort, "PGM FLBPR 9000 NVS PGM+HVEN PGS- 9000"},
      {"tPROG short", FlashFault::TooShort, "PGM FLBPR 9000 NVS PGM+HVEN PGS 9000 PROG- HVEN"},
      {"tNVH short", FlashFault::TooShort, "PGM FLBPR 9000 NVS PGM+HVEN PGS 9000 PROG HVEN NVH- 0"},
      {"all cleared together", FlashFault::Order, "PGM FLBPR 9000 NVS PGM+HVEN PGS 9000 PROG 0"},
      {"erase pulse short", FlashFault::TooShort, "ERASE FLBPR 9000 NVS ERASE+HVEN PULSE- HVEN"},
      {"written while erasing", FlashFault::Order,
       "ERASE FLBPR 9000 NVS ERASE+HVEN FFFF PULSE HVEN"},
  };
  const std::map<std::string, int> control{{"0", 0},
                                           {"PGM", flcr::kPgm},
                                           {"HVEN", flcr::kHven},
                                           {"ERASE", flcr::kErase},
                                           {"PGM+HVEN", flcr::kPgm | flcr::kHven},
                                           {"ERASE+HVEN", flcr::kErase | flcr::kHven},
                                           {"PGM+ERASE", flcr::kPgm | flcr::kErase}};
  const std::map<std::string, std::uint64_t> times{
      {"NVS", t::kNvs},         {"PGS", t::kPgs},      {"PROG", t::kProgram},
      {"NVH", t::kNvh},         {"PULSE", t::kErase},  {"NVS-", t::kNvs - 1},
      {"PGS-", t::kPgs - 1},    {"NVH-", t::kNvh - 1}, {"PROG-", t::kProgram - 1},
      {"PULSE-", t::kErase - 1}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    mcu_ = ReadyMcu();
    mcu_.Poke(0x9000, 0xA5);
    std::istringstream steps(c.steps);
    for (std::string step; steps >> step;) {
      if (control.contains(step)) {
        Control(control.at(step));
      } else if (times.contains(step)) {
        Wait(times.at(step));
      } else if (step == "FLBPR") {
        mcu_.Read(mcu_.device().flbpr);
      } else {
        mcu_.Write(base::ParseHex(step), 0);
      }
    }
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

TEST_F(Flash, CodeInFlashSpoilsTheSequenceItRuns) {
  Select(flcr::kPgm, 0x9000);
  Wait(t::kNvs);
  // LDA #9; STA FLCR; SWI, fetched from the array.
  ASSERT_EQ(RunCode(mcu_, 0x8000, "A609C7FE0883"), RunEnd::SoftwareInterrupt);
  EXPECT_EQ(found().last_fault, FlashFault::RanFromFlash);
}

}  // namespace
}  // namespace brevant::simulator
