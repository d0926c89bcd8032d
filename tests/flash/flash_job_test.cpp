// SPDX-License-Identifier: MIT
// How a job comes to its end, whatever it does: by itself, by the user, by a reset or by a fault.
#include "flash/flash_job.h"

#include <gtest/gtest.h>

#include <functional>
#include <random>
#include <utility>

#include "flash/flash_bench.h"
#include "flash/flash_records.h"

namespace brevant::flash {
namespace {

constexpr const char* kNotBlank = "Flash EEPROM not blank or an error found in programming";

void ExpectNothingUnderWay(Bench& bench) {
  EXPECT_FALSE(bench.flash.running());
  EXPECT_EQ(bench.activity.RunMode(), control::Mode::Idle);
  EXPECT_FALSE(bench.activity.WaitingForBreak());
  EXPECT_EQ(bench.user.busy_cursors, 0);
  EXPECT_EQ(bench.user.progress_windows, 0);
}

std::string SingleBytes(base::Address count) {
  std::string text;
  for (base::Address i = 0; i < count; ++i) text += Record(0x9000 + i, ByteList{0x5A});
  return text;
}

TEST(FlashJob, ShowsThatItIsUnderWayUntilItsEnd) {
  for (const bool erase : {false, true}) {
    Bench bench;
    bench.debug_info.DebugInfoLoaded = true;
    ASSERT_TRUE(erase ? EraseFlashRange(bench.flash, 0x8000, 0x9000) : MassEraseFlash(bench.flash));
    EXPECT_EQ(bench.user.progress_windows, erase ? 1 : 0);
    EXPECT_EQ(bench.user.busy_cursors, erase ? 0 : 1);
    EXPECT_EQ(bench.activity.RunMode(), control::Mode::Operation);
    EXPECT_TRUE(bench.EndsWell(true));
    EXPECT_EQ(bench.resets, 1);
    EXPECT_FALSE(bench.debug_info.DebugInfoLoaded);
    ExpectNothingUnderWay(bench);
  }
}

TEST(FlashJob, TakesFiveRecordsOfAFileATick) {
  Bench bench;
  const std::string path = bench.Write("image.sx", SingleBytes(12));
  ASSERT_TRUE(ProgramFlashFile(bench.flash, path));
  EXPECT_EQ(bench.settings.String(base::keys::kProgramFile), path);
  for (const long expected : {5, 10, 12}) {
    EXPECT_TRUE(bench.flash.running());
    bench.Tick();
    EXPECT_EQ(bench.flash.status().bytes_programmed, expected);
  }
  EXPECT_EQ(bench.user.progress_text, "Programming flash EEPROM\nlocation from 900b to 900c");
  ExpectNothingUnderWay(bench);
}

TEST(FlashJob, StopsAtALocationThatIsNotBlank) {
  const std::string file = Record(0x9000, ByteList(48, 0xA5));
  for (const bool from_file : {false, true}) {
    Bench bench;
    bench.mcu().Poke(0x9018, 0x00);
    EXPECT_FALSE(
        from_file ? bench.ProgramText(file)
                  : bench.EndsWell(ProgramFlashLocations(bench.flash, 0x9000, ByteList(48, 0xA5))));
    EXPECT_EQ(bench.flash.status().outcome, FlashOutcome::VerifyFailed);
    EXPECT_EQ(bench.flash.status().bytes_programmed, 16);
    EXPECT_EQ(bench.user.TakeTexts(), Texts{kNotBlank});
    EXPECT_EQ(bench.Peek(0x9020), 0xFF) << "nothing is programmed behind it";
    EXPECT_EQ(bench.resets, 1);
    ExpectNothingUnderWay(bench);
  }
}

TEST(FlashJob, CancelAndResetKeepWhatIsProgrammedAndSayWhatIsInFlash) {
  Bench file, reset, erase;
  file.user.cancels_after = 3;
  EXPECT_FALSE(file.ProgramText(SingleBytes(9)));
  EXPECT_TRUE(file.Holds(0x9000, {0x5A, 0x5A, 0x5A, 0xFF}));
  EXPECT_NE(file.user.texts.back().find("3 of 9 bytes are programmed and verified.\nThe rest is "
                                        "blank."),
            std::string::npos)
      << file.user.texts.back();

  ASSERT_TRUE(ProgramFlashFile(reset.flash, reset.Write("image.s19", SingleBytes(9))));
  reset.Tick();
  reset.ResetTarget();
  reset.Tick();
  EXPECT_TRUE(reset.Holds(0x9004, {0x5A, 0xFF}));

  erase.FillFlash(0x5A);
  erase.user.cancels_after = 0;
  ASSERT_TRUE(EraseFlashRange(erase.flash, 0x8000, 0xFFFF));
  erase.Tick();
  EXPECT_TRUE(erase.Holds(0x8000, ByteList(0x7E00, 0xFF))) << "no reset under high voltage";

  for (Bench* bench : {&file, &reset, &erase}) {
    EXPECT_EQ(bench->flash.status().outcome,
              bench == &erase ? FlashOutcome::Done : FlashOutcome::Cancelled);
    EXPECT_EQ(bench->resets, 1);
    ExpectNothingUnderWay(*bench);
  }
}

TEST(FlashJob, SaysAtOnceHowFarItCameWhenTheLinkIsLost) {
  Bench bench;
  const std::string path = bench.Write("image.s19", Record(0x9000, ByteList(100, 0xA5)));
  ASSERT_TRUE(ProgramFlashFile(bench.flash, path));
  // In the third block.
  bench.target.SetFaultPlan({{.kind = simulator::FaultKind::CutLine, .at_host_byte = 160}});
  bench.Tick();
  EXPECT_EQ(bench.flash.status().outcome, FlashOutcome::LinkLost);
  ASSERT_EQ(bench.user.texts.size(), 1u);
  EXPECT_NE(bench.user.texts[0].find("32 of 100 bytes are programmed and verified. The bytes from "
                                     "9020 on are in doubt."),
            std::string::npos)
      << bench.user.texts[0];
  ExpectNothingUnderWay(bench);
  bench.Tick();
  EXPECT_EQ(bench.user.texts.size(), 1u);
}

// Whatever one byte on the line comes to: "done" is said of what flash holds.
TEST(FlashJob, ClaimsNothingThatTheBoardDoesNotBearOut) {
  using enum simulator::FaultKind;
  const ByteList bytes{0x10, 0x32, 0x54, 0x76, 0x98, 0xBA, 0xDC, 0xFE, 0x0F, 0x1E,
                       0x2D, 0x3C, 0x4B, 0x5A, 0x69, 0x78, 0x87, 0x96, 0xA5, 0xB4};
  for (const simulator::FaultKind kind : {LoseHostByte, DropLocalEcho, DropMonitorEcho, FlipEcho,
                                          FlipHostByte, ExtraByte, LoseReply, FlipReply}) {
    for (std::uint64_t at = 1; at < 320; ++at) {
      Bench bench;
      bench.target.SetFaultPlan({{.kind = kind, .at_host_byte = at, .bit = 3}});
      if (!bench.ProgramText(Record(0x9000, bytes))) continue;
      EXPECT_TRUE(bench.Holds(0x9000, bytes)) << static_cast<int>(kind) << " at " << at;
    }
  }
}

TEST(FlashJob, TellsWhatFailedWhenTheTargetDoesNotAnswer) {
  const std::pair<std::function<bool(FlashJob&)>, std::string> cases[] = {
      {MassEraseFlash, "Error in mass-erasing flash"},
      {ProgramIrqVector, "Error in programming IRQ vector"},
      {[](auto& job) { return ProgramFlashLocations(job, 0x9000, ByteList{1}); },
       "Error in programmingflash location"},
      {[](auto& job) { return EraseFlashRange(job, 0x8000, 0x9000); }, "Error in erasing flash"},
      {[](auto& job) {
         return ProgramFlashFile(job, "image", ParseFlashRecords(Record(0x9000, ByteList{1})));
       },
       "Error in programming flash"},
  };
  for (const auto& [start, text] : cases) {
    Bench bench;
    bench.target.SetFaultPlan({{.kind = simulator::FaultKind::CutLine, .at_host_byte = 30}});
    EXPECT_FALSE(start(bench.flash));
    EXPECT_EQ(bench.user.texts.back(), text + ". Check the reset switch");
    EXPECT_EQ(bench.flash.status().outcome, FlashOutcome::LinkLost);
    ExpectNothingUnderWay(bench);
  }
}

// Whatever goes wrong on the wire, at whatever moment: what is called done is done, and afterwards
// the user can connect, erase and program the same again.
TEST(FlashJob, CanStartAfreshAfterEveryKindOfFault) {
  using simulator::FaultKind;
  std::mt19937 random(7);
  const ByteList code(16, 0x3C);
  const std::string text = Record(0x9000, ByteList(24, 0xA5)) + Record(0xFFF0, code);
  const auto programmed = [&](Bench& bench) {
    return bench.Holds(0x9000, ByteList(24, 0xA5)) && bench.Holds(0xFFF0, code);
  };
  for (int number = 0; number <= static_cast<int>(FaultKind::ResetMcu); ++number) {
    for (int sample = 0; sample < 20; ++sample) {
      const auto kind = static_cast<FaultKind>(number);
      Bench bench;
      const bool file = sample % 2 == 0;
      const std::uint64_t at = random() % (file ? 420 : 220);
      SCOPED_TRACE(base::Format("kind %d at byte %d", number, at));
      bench.target.SetFaultPlan({{kind, at, static_cast<std::uint8_t>(random() % 8), 0x55}});
      if (file && bench.ProgramText(text)) {
        // The link compares the echoes of a command's last byte only, so it cannot see every flip.
        EXPECT_TRUE(programmed(bench) || kind == FaultKind::FlipHostByte);
      }
      if (sample % 6 == 1) MassEraseFlash(bench.flash);
      if (sample % 6 == 3) EraseFlashRange(bench.flash, 0x8000, 0xFFFF);
      if (sample % 6 == 5) ProgramFlashLocations(bench.flash, 0x9000, ByteList(20, 0xA5));
      bench.TickToEnd();
      // The break byte may be what got lost.
      bench.flash.Cancel();
      ExpectNothingUnderWay(bench);

      ASSERT_TRUE(bench.Connect());
      ASSERT_TRUE(bench.EndsWell(MassEraseFlash(bench.flash)));
      ASSERT_TRUE(bench.ProgramText(text));
      EXPECT_TRUE(programmed(bench));
      EXPECT_TRUE(bench.Passed());
    }
  }
}

}  // namespace
}  // namespace brevant::flash
