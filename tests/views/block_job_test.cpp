// SPDX-License-Identifier: MIT
#include "views/block_job.h"

#include <numeric>

#include "devices/device.h"
#include "load/target_bench.h"
#include "views/view_bench.h"

namespace brevant::views {
namespace {

class BlockJobTest : public ViewBench {
 protected:
  control::TargetCrc crc{memory, link, frame};
  BlockJob job{memory, crc, frame, activity, user};
};

// What the line turns on its way to the host shows in no echo.
TEST_F(BlockJobTest, WhatIsDoneStandsThereWhateverTheLineTurns) {
  ByteList source(0x40);
  std::iota(source.begin(), source.end(), std::uint8_t{1});
  for (const auto kind : {simulator::FaultKind::FlipReply, simulator::FaultKind::FlipHostByte,
                          simulator::FaultKind::LoseReply}) {
    for (unsigned at = 0; at < 150; at += 7) {
      Load(0x0100, source);
      target.SetFaultPlan({{.kind = kind, .at_host_byte = at, .bit = 2}});
      const BlockOutcome outcome = job.Run(BlockOperation::Move(0x0100, 0x013F, 0x0180));
      for (base::Address i = 0; i < job.operation()->written().count; ++i) {
        ASSERT_EQ(Peek(job.operation()->written().first + i),
                  source[job.operation()->written().first + i - 0x0180])
            << at;
      }
      EXPECT_EQ(outcome == BlockOutcome::Done, user.TakeTexts().empty());
      target.SetFaultPlan({});
      if (link.LinkError) Connect();
    }
  }
}

TEST_F(BlockJobTest, SaysWhatWasNotTakenAndHowFarItGot) {
  load::TargetBench small(simulator::Ql());
  small.memory.UseDevice(devices::BySettingsNumber(0));
  BlockOperation fill = BlockOperation::Fill(0x0100, 0x01FF, 0x1234);
  EXPECT_FALSE(fill.Step(small.memory, small.crc));
  EXPECT_EQ(fill.outcome(), BlockOutcome::NotTaken) << "the board has no RAM there";
  EXPECT_EQ(fill.fault_at(), 0x0100u);

  EXPECT_EQ(job.Run(BlockOperation::Fill(0x0030, 0x004F, 0xFFFF)), BlockOutcome::Done)
      << "registers read as they like";
  EXPECT_NE(BlockMessage(*job.operation(), memory).text.find("registers"), std::string::npos);

  EXPECT_EQ(job.Run(BlockOperation::Fill(0x0200, 0x0250, 0)), BlockOutcome::Refused);
  EXPECT_EQ(job.operation()->fault_at(), 0x0240u);
  user.cancels_after = 1;
  EXPECT_EQ(job.Run(BlockOperation::Fill(0x0100, 0x01FF, 0)), BlockOutcome::Cancelled);
  EXPECT_EQ(user.texts.back(),
            "Cancelled before its end.\n\n0100 to 013f were written and read back.");
}

TEST_F(BlockJobTest, KeepsTheStackOutOfWhatIsWrittenAndOfWhatIsMoved) {
  frame.SetStackPointer(0x0160);
  user.TakeTexts();
  Load(0x0100, ByteList(0x40, 0x77));
  EXPECT_EQ(job.Run(BlockOperation::Move(0x0100, 0x013F, 0x0140)), BlockOutcome::Done);
  EXPECT_EQ(user.TakeTexts().size(), 1u) << "that SP was moved";
  EXPECT_GE(frame.SP, 0x0180u + 32);
  EXPECT_EQ(Peek(0x017F), 0x77);
  EXPECT_TRUE(frame.ReadRegisters());
  EXPECT_EQ(job.Run(BlockOperation::Fill(0x0040, 0x023F, 0)), BlockOutcome::Refused);
  EXPECT_NE(user.texts.back().find("leaves no room"), std::string::npos);
}

}  // namespace
}  // namespace brevant::views
