// SPDX-License-Identifier: MIT
#include "flash/flash_operations.h"

#include <gtest/gtest.h>

#include <functional>
#include <random>

#include "flash/flash_bench.h"

namespace brevant::flash {
namespace {

const std::vector<const simulator::Device*> kDevices{&simulator::Gp32(), &simulator::Ql()};

// No rule of the flash sequence was broken.
void ExpectCleanSequences(Bench& bench) {
  const simulator::FlashDiagnostics& seen = bench.mcu().flash_diagnostics();
  EXPECT_EQ(seen.refused, 0u) << static_cast<int>(seen.last_fault);
}

TEST(MassErase, BlanksEveryByteAndLeavesABlankCode) {
  for (const simulator::Device* device : kDevices) {
    Bench bench(*device);
    bench.FillFlash(0x5A);
    ASSERT_TRUE(bench.Connect());
    bench.debug_info.DebugInfoLoaded = true;
    ASSERT_TRUE(bench.flash.MassEraseCommand());
    EXPECT_EQ(bench.user.busy_cursors, 1);
    bench.TickToEnd();
    EXPECT_EQ(bench.flash.status().outcome, FlashOutcome::Done);
    for (const images::Block& block : bench.FlashContent().Blocks()) {
      EXPECT_EQ(block.bytes, ByteList(block.bytes.size(), 0xFF)) << block.address;
    }
    ExpectCleanSequences(bench);
    EXPECT_EQ(bench.resets, 1);
    EXPECT_TRUE(bench.Passed()) << "the reset has to send the blank code";
    EXPECT_EQ(bench.user.busy_cursors, 0);
    EXPECT_EQ(bench.activity.RunMode(), control::Mode::Idle);
    EXPECT_FALSE(bench.debug_info.DebugInfoLoaded);
    EXPECT_EQ(bench.user.TakeTexts(), Texts{"Do you really want to mass erase flash EEPROM"});
  }
}

TEST(MassErase, WorksOnALockedPartAndOpensIt) {
  for (const simulator::Device* device : kDevices) {
    Bench bench(*device);
    bench.FillFlash(0x5A);
    bench.link.PulseReset();
    bench.monitor.SendSecurityCode(link::kDefaultSecurityCode);
    ASSERT_FALSE(bench.Passed());
    bench.security.Forget();
    ASSERT_TRUE(bench.flash.MassEraseFlash());
    bench.TickToEnd();
    EXPECT_TRUE(bench.Passed());
    EXPECT_EQ(bench.Peek(0xFDFF), 0xFF);
  }
}

TEST(MassErase, IsNotDoneAgainstTheUsersWill) {
  Bench bench;
  bench.FillFlash(0x5A);
  bench.debug_info.DebugInfoLoaded = true;
  bench.user.agrees = false;
  EXPECT_FALSE(bench.flash.MassEraseCommand());
  EXPECT_EQ(bench.flash.status().outcome, FlashOutcome::Refused);
  EXPECT_TRUE(bench.debug_info.DebugInfoLoaded);
  EXPECT_EQ(bench.Peek(0x8000), 0x5A);
}

TEST(EraseRange, ErasesExactlyTheNamedPages) {
  struct Case {
    const simulator::Device* device;
    base::Address start, end;
    base::Address first_blank, last_blank;
  };
  const std::vector<Case> cases = {
      {&simulator::Gp32(), 0x8000, 0xFFFF, 0x8000, 0xFFFF},
      {&simulator::Gp32(), 0x8000, 0x8080, 0x8000, 0x807F},
      {&simulator::Gp32(), 0x9001, 0x9181, 0x9000, 0x91FF},
      {&simulator::Gp32(), 0xFF80, 0xFFFF, 0xFF80, 0xFFFF},
      {&simulator::Ql(), 0xEE00, 0xFDFF, 0xEE00, 0xFDFF},
      {&simulator::Ql(), 0xC000, 0xFFFF, 0xC000, 0xFFFF},
      {&simulator::Ql(), 0xF010, 0xF011, 0xF000, 0xF03F},
      {&simulator::Ql(), 0xFFC0, 0xFFFF, 0xFFC0, 0xFFFF},
  };
  for (const Case& c : cases) {
    Bench bench(*c.device);
    bench.FillFlash(0x5A);
    ASSERT_TRUE(bench.Connect());
    ASSERT_TRUE(bench.flash.EraseFlashRange(c.start, c.end));
    EXPECT_EQ(bench.user.progress_windows, 1);
    bench.TickToEnd();
    EXPECT_EQ(bench.flash.status().outcome, FlashOutcome::Done);
    for (const images::Block& block : bench.FlashContent().Blocks()) {
      for (base::Address i = 0; i < block.bytes.size(); ++i) {
        const base::Address at = block.address + i;
        // The last byte of the block protect register's page, to which the routine has to write, is
        // no flash on either device: that page outlives a range erase.
        if (at <= c.device->flbpr && at > 0xFE00) continue;
        const bool blank = at >= c.first_blank && at <= c.last_blank;
        ASSERT_EQ(block.bytes[i], blank ? 0xFF : 0x5A) << at << " erasing from " << c.start;
      }
    }
    EXPECT_EQ(bench.user.progress_windows, 0);
    EXPECT_EQ(bench.resets, 1);
    EXPECT_TRUE(bench.Passed()) << c.start;
  }
}

TEST(EraseRange, AsksAndRefusesAnEmptyRange) {
  Bench bench;
  bench.FillFlash(0x5A);
  EXPECT_FALSE(bench.flash.EraseFlashRange(0x8000, 0x8000));
  EXPECT_EQ(bench.user.TakeTexts(), (Texts{"It is going to erase flash EEPROM, please confirm.",
                                           "End address must be greater than start address"}));
  bench.user.agrees = false;
  EXPECT_FALSE(bench.flash.EraseFlashRange(0x8000, 0xFFFF));
  EXPECT_EQ(bench.flash.status().outcome, FlashOutcome::Refused);
  EXPECT_EQ(bench.Peek(0x8000), 0x5A);
  EXPECT_FALSE(bench.activity.WaitingForBreak());
}

TEST(EraseRange, CancelResetsTheTargetAtOnce) {
  Bench bench;
  bench.user.cancels_after = 0;
  ASSERT_TRUE(bench.flash.EraseFlashRange(0x8000, 0xFFFF));
  bench.Tick();
  EXPECT_EQ(bench.flash.status().outcome, FlashOutcome::Cancelled);
  EXPECT_EQ(bench.resets, 1);
  EXPECT_EQ(bench.user.progress_windows, 0);
  EXPECT_EQ(bench.security.InFlash(), std::nullopt) << "the erase may or may not have reached it";
  EXPECT_TRUE(bench.connector.TryKnownCodes());
}

TEST(ProgramLocations, SendsDataRoutineAndParametersInThisOrder) {
  Bench bench;
  bench.target.board().ClearHostLog();
  ASSERT_TRUE(bench.flash.ProgramFlashLocations(0x9000, ByteList{0x12, 0x34, 0x56}));
  const std::string sent = bench.Commands();
  EXPECT_TRUE(sent.starts_with("R00DF w12 w34 w56 R007F w45 w01 w00 w94")) << sent;
  EXPECT_TRUE(
      sent.ends_with("w81 SP W00FE=00 W00FF=80 W001F=01 "
                     "R00D5 w90 w00 w90 w00 w03 w03 w00 wE0 RUN"))
      << sent;
  EXPECT_EQ(bench.activity.RunMode(), control::Mode::Operation);
  bench.TickToEnd();
  EXPECT_EQ(bench.flash.status().outcome, FlashOutcome::Done);
  EXPECT_EQ(bench.flash.status().bytes_programmed, 3);
  EXPECT_EQ(bench.Peek(0x9000), 0x12);
  EXPECT_EQ(bench.Peek(0x9002), 0x56);
  EXPECT_EQ(bench.Peek(0x9003), 0xFF);
  ExpectCleanSequences(bench);
}

TEST(ProgramLocations, TakesMoreBytesThanABlockHolds) {
  for (const simulator::Device* device : kDevices) {
    Bench bench(*device);
    ByteList bytes;
    for (std::uint8_t i = 0; i < 50; ++i) bytes.push_back(i);
    ASSERT_TRUE(bench.flash.ProgramFlashLocations(0xF001, bytes));
    bench.TickToEnd();
    EXPECT_EQ(bench.flash.status().bytes_programmed, 50);
    for (std::uint8_t i = 0; i < 50; ++i) EXPECT_EQ(bench.Peek(0xF001u + i), i);
    EXPECT_EQ(bench.resets, 1);
  }
}

TEST(ProgramLocations, SaysWhenTheFlashIsNotBlank) {
  Bench bench;
  bench.mcu().Poke(0x9001, 0x00);
  ASSERT_TRUE(bench.flash.ProgramFlashLocations(0x9000, ByteList{0x12, 0x34}));
  bench.TickToEnd();
  EXPECT_EQ(bench.flash.status().outcome, FlashOutcome::VerifyFailed);
  EXPECT_EQ(bench.user.TakeTexts(),
            Texts{"Flash EEPROM not blank or an error found in programming"});
  EXPECT_EQ(bench.resets, 1);
}

TEST(ProgramLocations, FollowsTheSecurityCode) {
  Bench bench;
  const ByteList code{1, 2, 3, 4, 5, 6, 7, 8};
  ASSERT_TRUE(bench.flash.ProgramFlashLocations(0xFFF6, code));
  bench.TickToEnd();
  EXPECT_EQ(bench.security.InFlash(), (link::SecurityCode{1, 2, 3, 4, 5, 6, 7, 8}));
  EXPECT_TRUE(bench.Passed());
}

TEST(ProgramLocations, SurvivesAProgramStackInTheRoutinesRam) {
  // A program that was stopped deep in its calls: the monitor works where the data would go.
  for (const base::Address sp : {0x00C0u, 0x00EFu, 0x00F4u, 0x00FCu}) {
    Bench bench;
    ASSERT_TRUE(bench.frame.SetStackPointer(sp));
    ByteList bytes(16, 0xA5);
    ASSERT_TRUE(bench.flash.ProgramFlashLocations(0x9000, bytes)) << sp;
    bench.TickToEnd();
    for (base::Address i = 0; i < 16; ++i) ASSERT_EQ(bench.Peek(0x9000 + i), 0xA5) << sp;
  }
}

TEST(ProgramIrqVector, PointsItToTheMonitorsHandler) {
  for (const simulator::Device* device : kDevices) {
    Bench bench(*device);
    ASSERT_TRUE(bench.flash.ProgramIrqVector());
    bench.TickToEnd();
    EXPECT_EQ(bench.Peek(0xFFFA), 0xFE);
    EXPECT_EQ(bench.Peek(0xFFFB), 0x27);
    EXPECT_EQ(bench.Peek(0xFFFC), 0xFF);
    // Two bytes of the security code have changed with it.
    EXPECT_TRUE(bench.Passed());
  }
}

TEST(FlashOperations, TellWhatFailedWhenTheTargetDoesNotAnswer) {
  struct Case {
    std::function<bool(FlashOperations&)> start;
    std::string text;
  };
  const std::vector<Case> cases = {
      {[](auto& flash) { return flash.MassEraseFlash(); },
       "Error in mass-erasing flash. Check the reset switch"},
      {[](auto& flash) { return flash.ProgramIrqVector(); },
       "Error in programming IRQ vector. Check the reset switch"},
      {[](auto& flash) { return flash.ProgramFlashLocations(0x9000, ByteList{1}); },
       "Error in programmingflash location. Check the reset switch"},
      {[](auto& flash) { return flash.EraseFlashRange(0x8000, 0x9000); },
       "Error in erasing flash. Check the reset switch"},
  };
  for (const Case& c : cases) {
    Bench bench;
    bench.target.SetFaultPlan({{.kind = simulator::FaultKind::CutLine, .at_host_byte = 30}});
    EXPECT_FALSE(c.start(bench.flash));
    EXPECT_EQ(bench.user.texts.back(), c.text);
    EXPECT_EQ(bench.flash.status().outcome, FlashOutcome::LinkLost);
    EXPECT_EQ(bench.activity.RunMode(), control::Mode::Idle);
    EXPECT_EQ(bench.user.busy_cursors, 0);
    EXPECT_EQ(bench.user.progress_windows, 0);
  }
}

TEST(FlashOperations, CanStartAfreshAfterEveryKindOfFault) {
  std::mt19937 random(11);
  for (const simulator::FaultKind kind : kAllFaults) {
    for (int sample = 0; sample < 9; ++sample) {
      Bench bench;
      const std::uint64_t at = random() % 220;
      SCOPED_TRACE(base::Format("kind %d at byte %d", static_cast<int>(kind), at));
      bench.target.SetFaultPlan({{kind, at, static_cast<std::uint8_t>(random() % 8), 0x55}});
      if (sample % 3 == 0) bench.flash.MassEraseFlash();
      if (sample % 3 == 1) bench.flash.EraseFlashRange(0x8000, 0xFFFF);
      if (sample % 3 == 2) bench.flash.ProgramFlashLocations(0x9000, ByteList(20, 0xA5));
      bench.TickToEnd();
      // The break byte may be what got lost.
      bench.flash.Cancel();
      EXPECT_FALSE(bench.flash.running());
      EXPECT_EQ(bench.user.busy_cursors + bench.user.progress_windows, 0);

      ASSERT_TRUE(bench.Connect());
      ASSERT_TRUE(bench.flash.MassEraseFlash());
      bench.TickToEnd();
      ASSERT_EQ(bench.flash.status().outcome, FlashOutcome::Done);
      ASSERT_TRUE(bench.flash.ProgramFlashLocations(0x9000, ByteList{0x12}));
      bench.TickToEnd();
      EXPECT_EQ(bench.Peek(0x9000), 0x12);
      EXPECT_TRUE(bench.Passed());
    }
  }
}

}  // namespace
}  // namespace brevant::flash
