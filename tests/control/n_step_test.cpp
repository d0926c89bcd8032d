// SPDX-License-Identifier: MIT
#include "control/n_step.h"

#include "control/bench.h"
#include "control/indication.h"

namespace brevant::control {
namespace {

class NStepTest : public Bench {
 protected:
  NStepTest() {
    Program(0x0150, ByteList(0x60, 0x9D));
    n_step.settings.condition = NStepCondition::AfterCount;
  }
  base::Address Steps() const { return frame.PC - 0x0150; }

  Indication indication;
  NStep n_step{run, frame, breakpoints, debug_info, indication};
};

TEST_F(NStepTest, TakesTwoStepsMoreThanItsCountOnEveryTick) {
  n_step.ToolbarCommand();
  EXPECT_TRUE(indication.n_stepping);
  EXPECT_EQ(Steps(), 1u);
  Tick(5);
  EXPECT_EQ(Steps(), 6u);
  Tick(20);
  EXPECT_EQ(Steps(), 12u);
  EXPECT_EQ(state.RunMode, Mode::Idle);
  EXPECT_FALSE(indication.n_stepping);
}

TEST_F(NStepTest, KeepsItsPaceForeverUntilTheCommandComesAgain) {
  n_step.settings.condition = NStepCondition::Forever;
  n_step.settings.update_rate = 3;
  EXPECT_TRUE(n_step.MenuCommand());
  n_step.Start();
  Tick(9);
  EXPECT_EQ(Steps(), 4u);
  n_step.settings.update_rate = 0;
  Tick(30);
  EXPECT_EQ(Steps(), 34u);
  EXPECT_FALSE(n_step.MenuCommand());
  Tick(3);
  EXPECT_EQ(Steps(), 34u);
  state.RunMode = Mode::Tracing;
  n_step.ToolbarCommand();
  EXPECT_FALSE(n_step.MenuCommand());
  EXPECT_EQ(state.RunMode, Mode::Tracing);
}

TEST_F(NStepTest, IsOverWhenTheProgramIsLetGo) {
  n_step.settings.condition = NStepCondition::Forever;
  n_step.Start();
  Tick(3);
  ASSERT_TRUE(indication.n_stepping);
  run.Go();
  EXPECT_EQ(state.RunMode, Mode::Running);
  EXPECT_FALSE(indication.n_stepping);
}

TEST_F(NStepTest, StopsAtABreakpointButLeavesTheOneItStartsOn) {
  breakpoints.AddBreakpoint(0x0150);
  breakpoints.AddBreakpoint(0x0155);
  n_step.Start();
  Tick(20);
  EXPECT_EQ(Steps(), 5u);
  EXPECT_EQ(state.RunMode, Mode::Idle);
}

TEST_F(NStepTest, StopsAtACStatementEvenFromTheSourceView) {
  debug_info.LineTable.Assign(
      {{.address = 0x0150, .line = 1, .file = 0}, {.address = 0x0158, .line = 2, .file = 0}},
      {"a.c"});
  debug_info.DebugInfoLoaded = true;
  debug_info.tool_chain = symbols::ToolChain::Imagecraft;
  run.SetSourceViewCurrent(true);
  n_step.settings.condition = NStepCondition::AtStatement;
  n_step.Start();
  Tick(30);
  EXPECT_EQ(Steps(), 8u);
  EXPECT_EQ(state.RunMode, Mode::Idle);
}

TEST_F(NStepTest, StepsOverCallsAndWaitsForTheOnesThatTakeLong) {
  n_step.settings.into_subroutines = false;
  n_step.settings.count = 3;
  // BSR to a loop of about 160 ms, then NOPs.
  target.board().Load(0x0150, ByteList{0xAD, 0x20});
  target.board().Load(0x0172, ByteList{0x45, 0, 0, 0xAF, 0xFF, 0x65, 0, 0, 0x26, 0xF9, 0x81});
  n_step.Start();
  EXPECT_TRUE(state.StepPending);
  TickUntilIdle();
  EXPECT_EQ(frame.PC, 0x0152u + 4);
  EXPECT_EQ(frame.ProgramSP(), 0x00FFu);
  EXPECT_FALSE(link.LinkError || indication.n_stepping || state.RunningShown);
}

TEST_F(NStepTest, AStopOrAResetEndsIt) {
  PointIrqVectorToMonitor();
  n_step.settings.condition = NStepCondition::Forever;
  n_step.settings.into_subroutines = false;
  Program(0x0150, {0x9A, 0x9D, 0xAD, 0x02, 0x9D, 0x9D, 0x20, 0xFE});  // CLI; ...; BSR never returns
  n_step.Start();
  Tick(8);
  EXPECT_TRUE(state.StepPending && state.RunningShown);
  EXPECT_EQ(run.GoCommand(), StopResult::Stopped);
  EXPECT_FALSE(state.Busy() || indication.n_stepping);
  EXPECT_EQ(frame.PC, 0x0156u);

  n_step.Start();
  run.AbandonRunForReset();
  EXPECT_FALSE(state.Busy() || indication.n_stepping);
}

}  // namespace
}  // namespace brevant::control
