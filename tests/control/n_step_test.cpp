// SPDX-License-Identifier: MIT
#include "control/n_step.h"

#include "control/bench.h"

namespace brevant::control {
namespace {

class NStepTest : public Bench {
 protected:
  NStepTest() {
    Program(0x0150, ByteList(0x60, 0x9D));
    n_step.settings.condition = NStepCondition::AfterCount;
  }
  base::Address Steps() const { return frame.PC - 0x0150; }

  NStep n_step{run, activity, frame, breakpoints, debug_info};
};

TEST_F(NStepTest, TakesTwoStepsMoreThanItsCountOnEveryTick) {
  n_step.ToolbarCommand();
  EXPECT_EQ(activity.RunMode(), Mode::NStepping);
  EXPECT_EQ(Steps(), 1u);
  Tick(5);
  EXPECT_EQ(Steps(), 6u);
  Tick(20);
  EXPECT_EQ(Steps(), 12u);
  EXPECT_EQ(activity.RunMode(), Mode::Idle);
  EXPECT_EQ(run.last_stop(), (base::Stop{base::StopReason::StepDone, frame.PC, "end of N-step"}));
  // The second one counts anew.
  n_step.ToolbarCommand();
  Tick(20);
  EXPECT_EQ(Steps(), 24u);
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
  EXPECT_EQ(run.last_stop()->reason, base::StopReason::UserBreak);
  Tick(3);
  EXPECT_EQ(Steps(), 34u);
  Recorder trace;
  activity.BeginOperation(Mode::Tracing, trace);
  n_step.ToolbarCommand();
  EXPECT_FALSE(n_step.MenuCommand());
  EXPECT_EQ(activity.RunMode(), Mode::Tracing);
}

TEST_F(NStepTest, StopsAtABreakpointButLeavesTheOneItStartsOn) {
  breakpoints.AddBreakpoint(0x0150);
  breakpoints.AddBreakpoint(0x0155);
  n_step.Start();
  Tick(20);
  EXPECT_EQ(Steps(), 5u);
  EXPECT_EQ(activity.RunMode(), Mode::Idle);
  EXPECT_EQ(run.last_stop()->reason, base::StopReason::Breakpoint);
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
  EXPECT_EQ(activity.RunMode(), Mode::Idle);
}

TEST_F(NStepTest, StepsOverCallsAndWaitsForTheOnesThatTakeLong) {
  n_step.settings.into_subroutines = false;
  n_step.settings.count = 3;
  // BSR to a loop of about 160 ms, then NOPs.
  Load(0x0150, ByteList{0xAD, 0x20});
  Load(0x0172, ByteList{0x45, 0, 0, 0xAF, 0xFF, 0x65, 0, 0, 0x26, 0xF9, 0x81});
  n_step.Start();
  EXPECT_TRUE(activity.StepPending());
  TickUntilIdle();
  EXPECT_EQ(frame.PC, 0x0152u + 4);
  EXPECT_EQ(frame.ProgramSP(), 0x00FFu);
  EXPECT_FALSE(link.LinkError || activity.RunningShown());
}

TEST_F(NStepTest, AStopOrAResetEndsIt) {
  PointIrqVectorToMonitor();
  n_step.settings.condition = NStepCondition::Forever;
  n_step.settings.into_subroutines = false;
  Program(0x0150, {0x9A, 0x9D, 0xAD, 0x02, 0x9D, 0x9D, 0x20, 0xFE});  // CLI; ...; BSR never returns
  n_step.Start();
  Tick(8);
  EXPECT_TRUE(activity.StepPending() && activity.RunningShown());
  EXPECT_EQ(run.GoCommand()->reason, base::StopReason::UserBreak);
  EXPECT_FALSE(activity.Busy());
  EXPECT_EQ(frame.PC, 0x0156u);

  n_step.Start();
  run.AbandonRunForReset();
  EXPECT_FALSE(activity.Busy());
  n_step.Start();
  run.Go();
  EXPECT_EQ(activity.RunMode(), Mode::Running);
}

}  // namespace
}  // namespace brevant::control
