// SPDX-License-Identifier: MIT
// Steps by lines in code made by hand; where they lead in C programs is looked at with the
// projects.
#include "control/line_step.h"

#include "control/bench.h"

namespace brevant::control {
namespace {

using enum base::StopReason;

// In RAM from $0150: line 1 at $0150, 2 at $0158, 3 at $0160; f at $0170 has lines 10 and 11,
// library code at $0190 has none.
class LineStepTest : public Bench {
 protected:
  LineStepTest() {
    Load(0x0150, ByteList(0x50, 0x9D));
    Load(0x0167, ByteList{0x81});
    Load(0x0170, ByteList{0x87, 0x9D, 0x86, 0x81});  // PSHA; NOP; PULA; RTS
    Load(0x0190, ByteList{0x9D, 0x81});
    const auto function = [this](const char* name, base::Address first, base::Address last) {
      debug_info.functions.push_back({.name = name, .module = "", .first = first, .last = last});
    };
    function("_main", 0x0150, 0x0167);
    function("_f", 0x0170, 0x0173);
    debug_info.LineTable.Assign(
        {{0x0150, 1, 0}, {0x0158, 2, 0}, {0x0160, 3, 0}, {0x0170, 10, 0}, {0x0171, 11, 0}},
        {"t.c"});
    debug_info.DebugInfoLoaded = true;
    SetPC(0x0150);
  }
  // The registers' PC where it ends.
  base::Address Go(LineStepKind kind) {
    EXPECT_EQ(step.Start(kind), "");
    for (int i = 0; i < 1000 && activity.Busy(); ++i) Tick();
    EXPECT_FALSE(activity.Busy());
    return frame.PC;
  }
  long Stops() const { return run.stops(); }

  LineStep step{run, activity, memory, frame, breakpoints, debug_info};
};

TEST_F(LineStepTest, LeavesALineWithALoopByOneBreakpoint) {
  for (const bool hardware : {true, false}) {
    UseHardware(hardware);
    Load(0x0150, ByteList{0xAE, 0x00, 0x5B, 0xFE});  // LDX #0; DBNZX *
    SetPC(0x0150);
    const long stops = Stops();
    EXPECT_EQ(Go(LineStepKind::Into), 0x0158u);
    EXPECT_EQ(step.moves(), 1);
    EXPECT_EQ(Stops(), stops + 1) << "what happens on the way is told to nobody";
    EXPECT_EQ(run.last_stop(), (base::Stop{StepDone, 0x0158, "t.c:2"}));
    EXPECT_EQ(Go(LineStepKind::Over), 0x0160u);
    EXPECT_EQ(activity.RunMode(), Mode::Idle);
  }
}

TEST_F(LineStepTest, GoesIntoCodeWithLinesAndOverCodeWithout) {
  Load(0x0150, ByteList{0xCD, 0x01, 0x90, 0xCD, 0x01, 0x70});  // JSR library; JSR f
  EXPECT_EQ(Go(LineStepKind::Into), 0x0171u) << "behind what the function does on entry";
  EXPECT_EQ(Go(LineStepKind::Into), 0x0156u) << "back in the caller's line";
  EXPECT_EQ(run.last_stop()->detail, "t.c:1");
  SetPC(0x0150);
  EXPECT_EQ(Go(LineStepKind::Over), 0x0158u);
  // A target that only registers know.
  Load(0x0150, ByteList{0x45, 0x01, 0x90, 0xFD, 0x45, 0x01, 0x70, 0xFD});  // LDHX #; JSR ,X
  SetPC(0x0150);
  EXPECT_EQ(Go(LineStepKind::Into), 0x0171u);
  EXPECT_EQ(Go(LineStepKind::Out), 0x0158u);
}

TEST_F(LineStepTest, ARecursionDoesNotEndAStepOverIt) {
  // f calls itself while A counts down from 3, on its line 11.
  Load(0x0150, ByteList{0xA6, 0x03, 0xCD, 0x01, 0x70});  // LDA #3; JSR f
  Load(0x0170, ByteList{0x4B, 0x02, 0x20, 0x03,          // DBNZA 0174; BRA 0177
                        0xCD, 0x01, 0x70, 0x9D, 0x81});  // 0174: JSR f; 0177: NOP; RTS
  debug_info.functions[1].last = 0x0178;
  debug_info.LineTable.Assign({{0x0150, 1, 0}, {0x0158, 2, 0}, {0x0170, 10, 0}, {0x0177, 12, 0}},
                              {"t.c"});
  EXPECT_EQ(Go(LineStepKind::Into), 0x0177u) << "the function's second line is its first statement";
  SetPC(0x0150);
  breakpoints.AddBreakpoint(0x0170);
  run.Go();
  TickUntilIdle();
  breakpoints.Clear();
  const base::Address sp = frame.ProgramSP();
  EXPECT_EQ(Go(LineStepKind::Over), 0x0177u);
  EXPECT_EQ(frame.ProgramSP(), sp) << "not in an inner activation";
  EXPECT_EQ(Go(LineStepKind::Out), 0x0155u);
}

TEST_F(LineStepTest, EndsAtTheUsersBreakpointAndAtTheUsersStop) {
  UseHardware(false);
  Load(0x0150, ByteList{0xCD, 0x01, 0x70});
  breakpoints.AddBreakpoint(0x0172);
  EXPECT_EQ(Go(LineStepKind::Over), 0x0172u);
  EXPECT_EQ(run.last_stop()->reason, Breakpoint);
  EXPECT_EQ(step.suspended(), std::nullopt);
  UseHardware(true);
  SetPC(0x0150);
  EXPECT_EQ(Go(LineStepKind::Over), 0x0158u) << "the break module has one place";
  EXPECT_EQ(step.suspended(), 0x0172u);

  // A line that never ends, and the user ends it.
  PointIrqVectorToMonitor();
  breakpoints.Clear();
  Load(0x0158, ByteList{0x9A, 0x9D, 0x20, 0xFD});  // CLI; NOP; BRA
  SetPC(0x0158);
  EXPECT_EQ(step.Start(LineStepKind::Into), "");
  Tick(3);
  EXPECT_TRUE(activity.RunningShown());
  EXPECT_EQ(step.Start(LineStepKind::Into), "") << "one at a time";
  EXPECT_EQ(run.GoCommand()->reason, UserBreak);
  EXPECT_FALSE(activity.Busy());
  EXPECT_EQ(run.last_stop()->reason, UserBreak);
  // The next operation starts clean.
  Load(0x0158, ByteList(4, 0x9D));
  SetPC(0x0158);
  EXPECT_EQ(Go(LineStepKind::Into), 0x0160u);
}

TEST_F(LineStepTest, ComesBackThroughCodeWithoutLines) {
  // The library calls f back.
  Load(0x0150, ByteList{0xCD, 0x01, 0x90});
  Load(0x0190, ByteList{0x87, 0xCD, 0x01, 0x70, 0x86, 0x81});  // PSHA; JSR f; PULA; RTS
  debug_info.SymbolTable.Assign(
      {{"_main", 0x0150, 0, {}}, {"_f", 0x0170, 0, {}}, {"lib", 0x0190, 0, {}}});
  breakpoints.AddBreakpoint(0x0171);
  run.Go();
  TickUntilIdle();
  breakpoints.Clear();
  ASSERT_EQ(frame.PC, 0x0171u);
  EXPECT_EQ(Go(LineStepKind::Into), 0x0153u) << "the line that has called the library";
  EXPECT_EQ(run.last_stop()->detail, "t.c:1");
  // The way out ends where the call was made, with a line or without.
  SetPC(0x0150);
  breakpoints.AddBreakpoint(0x0171);
  run.Go();
  TickUntilIdle();
  breakpoints.Clear();
  EXPECT_EQ(Go(LineStepKind::Out), 0x0194u);
  EXPECT_EQ(run.last_stop()->reason, StepDone);
}

TEST_F(LineStepTest, SaysWhatItDoesNotKnow) {
  SetPC(0x0198);
  EXPECT_EQ(Go(LineStepKind::Into), 0x0199u);
  EXPECT_EQ(run.last_stop()->detail, "no source line is known here: one instruction");
  EXPECT_THAT(step.Start(LineStepKind::Out), testing::StartsWith("the way out is not known: "));
  EXPECT_FALSE(activity.Busy());
  link.LinkError = true;
  EXPECT_EQ(step.Start(LineStepKind::Into), "");
  EXPECT_EQ(run.last_stop()->reason, LinkLost);
  EXPECT_FALSE(activity.Busy());
}

}  // namespace
}  // namespace brevant::control
